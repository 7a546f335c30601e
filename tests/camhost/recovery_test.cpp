// SPDX-License-Identifier: MIT
// camhost.exe when cameras go away and come back, by the events of rigs; and its
// measuring of live video.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/json.h"
#include "camhost/base/texts.h"
#include "tests/camhost/program.h"

namespace camhost::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// A camera with a gain, and what happens to it.
std::string cameraWith(const std::string& serial, const std::string& events) {
    return "[[camera]]\nname = \"SIM Loose\"\nserial = \"" + serial +
           "\"\nformats = [\"Y800 (32x24)\", \"Y800 (64x48)\"]\nframerates = [60.0, 30.0]\n"
           "[[camera.item]]\nname = \"Gain\"\n"
           "Value.range = { min = 0, max = 100, value = 10 }\n" +
           events;
}

constexpr const char* shortLoss = "[[camera.event]]\nframe = 20\ndo = \"unplug\"\nfor = 1.6\n";
constexpr const char* lossForGood = "[[camera.event]]\nframe = 20\ndo = \"unplug\"\n";

Outcome withCameras(const std::string& cameras, std::vector<std::string> arguments) {
    const auto file = testFolder() / "rig.toml";
    writeFile(file, "rig = 1\n" + cameras);
    arguments.insert(arguments.begin(), {"--rig", utf8(file)});
    return runCamhost(arguments);
}

Outcome grabWith(const std::string& events, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"grab", "--format", "none"});
    return withCameras(cameraWith("A1", events), std::move(arguments));
}

// Of the document, which is the last line.
CJson resultOf(const Outcome& outcome) {
    std::string reason;
    const std::string text = outcome.out.substr(0, outcome.out.size() - 1);
    const auto json = CJson::parse(text.substr(text.rfind('\n') + 1), reason);
    EXPECT_TRUE(json) << reason << ": " << outcome.out;
    return json.value_or(CJson()).find("result").value_or(CJson());
}

TEST(CamhostRecovery, OnLossWaitWaitsUntilTheCameraIsBack) {
    const Outcome outcome = grabWith(shortLoss, {"-n", "40", "--on-loss", "wait"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.err, HasSubstr("lost A1 after frame "));
    EXPECT_THAT(outcome.err, HasSubstr("; searching ...\nrestored after "));
    EXPECT_THAT(outcome.out, StartsWith("done: 40 frames in "));
    EXPECT_THAT(outcome.out, HasSubstr(", lost 1 ("));
}

TEST(CamhostRecovery, OnLossFailEndsAtOnce) {
    const Outcome outcome = grabWith(shortLoss, {"-n", "40", "--on-loss", "fail"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.err, Not(HasSubstr("searching")));
    EXPECT_THAT(outcome.err, HasSubstr("error: the camera is lost; "));
    EXPECT_THAT(outcome.out, HasSubstr(", lost 1 (0.0 s), Mono8\n"));
}

TEST(CamhostRecovery, OnLossSecondsEndWhenTheyAreOver) {
    const Outcome outcome = grabWith(lossForGood, {"-n", "40", "--on-loss", "1"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.err, HasSubstr("; searching ...\n"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("restored")));
    EXPECT_THAT(outcome.out, HasSubstr(", lost 1 (1."));
}

TEST(CamhostRecovery, OnLossSecondsAreEnoughForAShorterLoss) {
    const Outcome outcome = grabWith(shortLoss, {"-n", "40", "--on-loss", "20"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, StartsWith("done: 40 frames in "));
}

TEST(CamhostRecovery, SettingsAreWrittenAgainAfterALoss) {
    const std::vector<std::string> arguments{"-n", "40", "--set", "gain value range=30"};
    const Outcome without = grabWith(shortLoss, arguments);
    EXPECT_EQ(without.exit, 0);
    EXPECT_THAT(without.err, Not(HasSubstr("written again")));
    std::vector<std::string> again = arguments;
    again.insert(again.end(), {"--reapply", "--pixelformat", "rgb24"});
    const Outcome outcome = grabWith(shortLoss, again);
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("\ngain value range: 10 -> 30\n1 setting written again\n"));
    EXPECT_THAT(outcome.out, HasSubstr(", dropped 1, RGB24\n"));
}

TEST(CamhostRecovery, AFormatThatTheCameraLostIsWrittenAgain) {
    const Outcome outcome = grabWith(
        "[[camera.event]]\nframe = 20\ndo = \"unplug\"\nfor = 1.6\n"
        "format = \"Y800 (32x24)\"\n",
        {"-n", "40", "--reapply"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("\nvideoformat: Y800 (32x24) -> Y800 (64x48)\n"));
    EXPECT_THAT(outcome.out, StartsWith("done: 40 frames in "));
}

TEST(CamhostRecovery, FreshTellsWhatItDropped) {
    const Outcome outcome = grabWith("", {"-n", "4", "--fresh", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_TRUE(resultOf(outcome).find("dropped")) << outcome.out;
}

TEST(CamhostRecovery, TheLossOfOneCameraLeavesTheOtherRunning) {
    const std::string cameras =
        cameraWith("A1", "") + cameraWith("A2",
                                          "[[camera.event]]\ntime = 0.3\ndo = \"unplug\"\n"
                                          "for = 0.7\nplace = 1\n");
    const Outcome outcome =
        withCameras(cameras, {"-c", "A1", "grab", "--format", "none", "-n", "120", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\"serial\":\"A1\""));
    EXPECT_THAT(outcome.out, HasSubstr("\"frames\":120,"));
    EXPECT_THAT(outcome.out, HasSubstr("\"timeouts\":0,\"lost\":0,"));
}

TEST(CamhostRecovery, ALostCameraIsNotTakenForItsTwin) {
    const std::string cameras = cameraWith("A1", "") + cameraWith("A2", lossForGood);
    const Outcome outcome = withCameras(
        cameras, {"-c", "A2", "grab", "--format", "none", "-n", "40", "--on-loss", "1"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.err, HasSubstr("lost A2 after frame "));
    EXPECT_THAT(outcome.err, Not(HasSubstr("restored")));
}

TEST(CamhostRecovery, BenchMeasuresAndSavesNothing) {
    const Outcome outcome = withCameras(cameraWith("A1", ""), {"bench", "-t", "1.5"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.err, HasSubstr(" fps  "));
    EXPECT_THAT(outcome.out, StartsWith("rate      asked nothing, reported 60.00 fps, measured "));
    EXPECT_THAT(outcome.out, HasSubstr("\nlimit     "));
    EXPECT_THAT(outcome.out, HasSubstr("\ncpu       "));
    EXPECT_THAT(outcome.out, HasSubstr(" MiB/s, 3072 bytes a frame, 64x48 Mono8\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\ndone: "));
}

TEST(CamhostRecovery, BenchSeesASlowCamera) {
    const Outcome outcome =
        withCameras(cameraWith("A1", "[[camera.event]]\ntime = 0.0\ndo = \"slow\"\nrate = 10.0\n"),
                    {"bench", "-t", "2", "--set", "framerate=30", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\"asked_fps\":30.0,\"reported_fps\":30.0,"));
    EXPECT_EQ(resultOf(outcome).find("limit").value_or(CJson()).text(), "camera") << outcome.out;
}

TEST(CamhostRecovery, AnInterruptedBenchPrintsItsTotals) {
    const auto file = testFolder() / "rig.toml";
    writeFile(file, "rig = 1\n" + cameraWith("A1", ""));
    const Outcome outcome =
        interruptCamhost({"--rig", utf8(file), "bench", "-t", "600"}, " frames  ");
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, StartsWith("rate      "));
    EXPECT_THAT(outcome.err, HasSubstr("error: interrupted after "));
}

TEST(CamhostRecovery, WatchTellsALossAndAChangeBehindTheHostsBack) {
    const std::string events =
        "[[camera.event]]\ntime = 0.4\ndo = \"change\"\nitem = \"Gain\"\nrange = 55\n"
        "[[camera.event]]\ntime = 1.6\ndo = \"unplug\"\nfor = 1.6\n";
    const Outcome outcome = withCameras(cameraWith("A1", events), {"watch", "-t", "6"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, StartsWith("watching A1 \"SIM Loose\" since 20"));
    EXPECT_THAT(outcome.out, HasSubstr("  gain value range: 10 -> 55\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  lost after frame "));
    EXPECT_THAT(outcome.out, HasSubstr("  restored after "));
    EXPECT_THAT(outcome.out, HasSubstr("  gain value range: 55 -> 10\n"));
    EXPECT_THAT(outcome.out, HasSubstr(", lost 1 ("));
    EXPECT_THAT(outcome.out, HasSubstr(", changes 2\n"));
}

TEST(CamhostRecovery, WatchAsJsonIsAnObjectALine) {
    const Outcome outcome = withCameras(
        cameraWith("A1",
                   "[[camera.event]]\ntime = 0.4\ndo = \"change\"\nitem = \"Gain\"\nrange = 55\n"),
        {"watch", "-t", "2", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    for (const std::string& line : split(outcome.out, '\n')) {
        std::string reason;
        EXPECT_TRUE(line.empty() || CJson::parse(line, reason)) << reason << ": " << line;
    }
    EXPECT_THAT(outcome.out, StartsWith("{\"schema\":\"camhost/1\",\"event\":\"start\","));
    EXPECT_THAT(outcome.out, HasSubstr("\"key\":\"gain value range\",\"before\":\"10\",\"after\":"
                                       "\"55\"}\n"));
}

TEST(CamhostRecovery, AWatchEndsWithCtrlC) {
    const auto file = testFolder() / "rig.toml";
    writeFile(file, "rig = 1\n" + cameraWith("A1", ""));
    const Outcome outcome = interruptCamhost({"--rig", utf8(file), "-v", "watch"}, "adapter ");
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, HasSubstr("\nwatched for "));
    EXPECT_THAT(outcome.err, Not(HasSubstr("error")));
}

}  // namespace
}  // namespace camhost::test
