// SPDX-License-Identifier: MIT
// What a rig says wrongly about events, and what it may say.
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

class EventDescription : public CRigTest {
protected:
    // Keys of an event from line 7 on.
    static std::string errorOf(const std::string& keys) {
        const std::string rig =
            "[[camera]]\nname = \"A\"\nformats = [\"Y800 (8x4)\"]\n"
            "item = [{ name = \"Gain\", Value = { range = { min = 0, max = 9, value = 1 } } }]\n"
            "\n[[camera.event]]\n" +
            keys + "\n";
        char message[512] = "";
        EXPECT_EQ(1, virtualCamerasLoadRig(rig.c_str(), message, sizeof(message))) << keys;
        return message;
    }
};

TEST_F(EventDescription, UnknownKeysAreErrorsWithPlaceAndHint) {
    EXPECT_EQ("7:1: unknown key \"farme\" in event; did you mean \"frame\"?", errorOf("farme = 3"));
    EXPECT_EQ("8:1: unknown key \"fro\" in event \"stall\"; did you mean \"for\"?",
              errorOf("frame = 3\nfro = 1.0\ndo = \"stall\""));
    EXPECT_EQ("8:1: unknown key \"rate\" in event \"stall\"",
              errorOf("frame = 3\nrate = 1.0\ndo = \"stall\"").substr(0, 40));
    EXPECT_EQ("7:1: unknown key \"tiem\" in event \"drop\"; did you mean \"time\"?",
              errorOf("tiem = 3\ndo = \"drop\""));
}

TEST_F(EventDescription, WhatHappensIsOneOfTheKinds) {
    EXPECT_EQ("6:1: event needs \"do\"", errorOf("frame = 3"));
    EXPECT_EQ(
        "8:6: do must be one of: unplug, plug, stall, drop, slow, fail, trigger, change; did you "
        "mean \"unplug\"?",
        errorOf("frame = 3\ndo = \"unplugg\""));
}

TEST_F(EventDescription, AnEventStartsByOneThing) {
    const char* const one = "6:1: event needs one of: frame, time, call";
    EXPECT_EQ(one, errorOf("do = \"stall\""));
    EXPECT_EQ(one, errorOf("do = \"stall\"\nframe = 1\ntime = 1.0"));
    EXPECT_EQ("7:9: frame must be a whole number from 1 to 1000000000",
              errorOf("frame = 0\ndo = \"stall\""));
    EXPECT_EQ("7:8: time must be a number of seconds from 0",
              errorOf("time = -1.0\ndo = \"stall\""));
    EXPECT_EQ("8:7: nth goes with \"call\"", errorOf("time = 1.0\nnth = 2\ndo = \"stall\""));
}

TEST_F(EventDescription, OperationsAreThoseOfTheCallLog) {
    EXPECT_EQ(
        "7:8: there is no operation \"Grabber::startLiv\"; did you mean \"Grabber::startLive\"?",
        errorOf("call = \"Grabber::startLiv\"\ndo = \"fail\""));
    EXPECT_EQ("7:8: there is no operation \"startLive\"; did you mean \"Grabber::startLive\"?",
              errorOf("call = \"startLive\"\ndo = \"fail\""));
    EXPECT_EQ("7:8: there is no operation \"sleep\"", errorOf("call = \"sleep\"\ndo = \"fail\""));
    EXPECT_EQ("6:1: event needs \"operation\"", errorOf("frame = 1\ndo = \"fail\""));
}

TEST_F(EventDescription, RepetitionsHaveLimits) {
    EXPECT_EQ("8:9: every must be a whole number from 1 to 1000000000",
              errorOf("frame = 1\nevery = 0.5\ndo = \"drop\""));
    EXPECT_EQ("8:9: every must be at least 0.001 seconds",
              errorOf("time = 1\nevery = 0\ndo = \"drop\""));
    EXPECT_EQ("8:9: every must be one interval, or the shortest and the longest",
              errorOf("time = 1\nevery = [1]\ndo = \"drop\""));
    EXPECT_EQ("8:9: every must name the shortest interval first",
              errorOf("time = 1\nevery = [2, 1]\ndo = \"drop\""));
    EXPECT_EQ("8:9: times goes with \"every\"", errorOf("time = 1\ntimes = 2\ndo = \"drop\""));
    EXPECT_EQ("8:8: seed goes with \"every\"", errorOf("time = 1\nseed = 2\ndo = \"drop\""));
}

TEST_F(EventDescription, TheKeysOfEachKindAreChecked) {
    EXPECT_EQ("9:10: format must be one of: Y800 (8x4)",
              errorOf("time = 1\ndo = \"plug\"\nformat = \"RGB24\""));
    EXPECT_EQ("9:9: place must be within 1 and 1, the number of cameras",
              errorOf("time = 1\ndo = \"plug\"\nplace = 2"));
    EXPECT_EQ("9:10: serial must be hexadecimal digits, such as \"1A2B\"",
              errorOf("time = 1\ndo = \"plug\"\nserial = \"G\""));
    EXPECT_EQ("9:9: place goes with \"for\"", errorOf("time = 1\ndo = \"unplug\"\nplace = 1"));
    EXPECT_EQ("9:7: for must be at least 0.001 seconds",
              errorOf("time = 1\ndo = \"unplug\"\nfor = 0"));
    EXPECT_EQ("6:1: event needs \"rate\"", errorOf("time = 1\ndo = \"slow\""));
    EXPECT_EQ("9:8: rate must be above 0 and at most 1000 per second",
              errorOf("time = 1\ndo = \"slow\"\nrate = 0.0"));
    EXPECT_EQ("7:9: frame goes with other events; a trigger goes by time",
              errorOf("frame = 1\ndo = \"trigger\"\nrate = 1.0"));
}

TEST_F(EventDescription, AFailureSaysHow) {
    const std::string fail = "call = \"Grabber::startLive\"\ndo = \"fail\"\n";
    EXPECT_EQ("9:8: with must be one of: false, code, throw, empty; did you mean \"throw\"?",
              errorOf(fail + "with = \"thrown\""));
    EXPECT_EQ("9:8: code goes with with = \"code\"", errorOf(fail + "code = 0x80004005"));
    EXPECT_EQ("10:8: code must be a failing result code, such as 0x80004005",
              errorOf(fail + "with = \"code\"\ncode = 1"));
}

TEST_F(EventDescription, AChangeFitsTheProperty) {
    const std::string change = "time = 1\ndo = \"change\"\n";
    EXPECT_EQ("6:1: event needs \"item\"", errorOf(change + "range = 1"));
    EXPECT_EQ("9:8: item must be one of: Gain; did you mean \"Gain\"?",
              errorOf(change + "item = \"Gian\"\nrange = 1"));
    EXPECT_EQ("10:11: element must be one of: Value",
              errorOf(change + "item = \"Gain\"\nelement = \"Red\"\nrange = 1"));
    EXPECT_EQ("10:10: element \"Value\" has no switch",
              errorOf(change + "item = \"Gain\"\nswitch = true"));
    EXPECT_EQ("10:9: range must be within 0 and 9",
              errorOf(change + "item = \"Gain\"\nrange = 10"));
    EXPECT_EQ("6:1: event needs one of: range, abs, switch, strings",
              errorOf(change + "item = \"Gain\""));
}

TEST_F(EventDescription, NoCameraComesBackWithTheSerialOfAnother) {
    char message[256] = "";
    EXPECT_EQ(1, virtualCamerasLoadRig("[[camera]]\nname = \"A\"\nserial = \"1A\"\n"
                                       "[[camera]]\nname = \"B\"\n"
                                       "[[camera.event]]\ntime = 1\ndo = \"plug\"\nserial = \"1a\"",
                                       message, sizeof(message)));
    EXPECT_STREQ("4:1: two cameras are called \"1A\"", message);
}

// Every text in the sources that looks like an operation and can fail.
TEST_F(EventDescription, EveryOperationThatCanFailHasAName) {
    std::set<std::string> used;
    const std::filesystem::path sources = VELMORA_SOURCE_DIR "/virtual_cameras";
    const std::regex operation(
        "(?:CLibraryCall|CGrabberCall|call|callOf)[ a-z]*\\(\\s*\"(\\w+::\\w+)\"");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sources)) {
        std::ostringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        const std::string source = text.str();
        for (std::sregex_iterator at(source.begin(), source.end(), operation), end; at != end;
             ++at) {
            used.insert((*at)[1]);
        }
    }
    used.erase("Grabber::Grabber");  // a constructor does not fail
    ASSERT_GT(used.size(), 40U);
    for (const std::string& name : used) {
        load("[[camera]]\nname = \"A\"\n[[camera.event]]\ncall = \"" + name +
             "\"\ndo = \"fail\"\n");
    }
}

// The first column of the guide's table of events, against what the parser offers.
TEST_F(EventDescription, TheGuideListsTheEventsThatThereAre) {
    std::ifstream guide(VELMORA_SOURCE_DIR "/docs/rig.md");
    std::string line;
    while (std::getline(guide, line) && line.rfind("| `do` | What happens", 0) != 0) {
    }
    std::getline(guide, line);  // the rule below the heading
    std::string documented;
    while (std::getline(guide, line) && line.rfind("| `", 0) == 0) {
        documented += (documented.empty() ? "" : ", ") + line.substr(3, line.find('`', 3) - 3);
    }
    EXPECT_EQ("8:6: do must be one of: " + documented, errorOf("frame = 1\ndo = \"\""));
}

}  // namespace
}  // namespace camera_tests
