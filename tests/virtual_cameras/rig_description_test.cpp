// SPDX-License-Identifier: MIT
#include <algorithm>
#include <fstream>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

class RigDescription : public CRigTest {
protected:
    static std::string errorOf(const std::string& toml) {
        char message[256] = "";
        EXPECT_EQ(1, virtualCamerasLoadRig(toml.c_str(), message, sizeof(message)));
        return message;
    }
    static std::vector<std::string> names() {
        DShowLib::Grabber grabber;
        std::vector<std::string> found;
        for (const auto& device : toStandard(grabber.getAvailableVideoCaptureDevices_())) {
            found.emplace_back(device.c_str());
        }
        return found;
    }
};

TEST_F(RigDescription, UnknownKeysAreErrorsWithPlaceAndHint) {
    EXPECT_EQ("3:1: unknown key \"seriall\" in camera; did you mean \"serial\"?",
              errorOf("[[camera]]\nname = \"A\"\nseriall = \"1\"\n"));
    EXPECT_EQ("1:1: unknown key \"cameras\" in rig; did you mean \"camera\"?",
              errorOf("cameras = []\n"));
    EXPECT_EQ("1:1: unknown key \"zzzzzz\" in rig", errorOf("zzzzzz = 1\n"));
    EXPECT_EQ(
        "6:1: unknown key \"rnage\" in element \"Value\"; did you mean \"range\"?",
        errorOf("[[camera]]\nname = \"A\"\n\n[[camera.item]]\nname = \"I\"\nValue.rnage = { }\n")
            .replace(2, 1, "1"));
}

TEST_F(RigDescription, KeysOfManyPartsAreErrorsWithPlace) {
    std::string key = "a";
    for (int i = 0; i < 300000; ++i) {
        key += ".a";
    }
    EXPECT_EQ("2:16: a key has more than 8 parts", errorOf("\n" + key + " = 1\n"));
    EXPECT_EQ("2:17: a key has more than 8 parts", errorOf("\n[" + key + "]\n"));
    EXPECT_EQ("2:18: a key has more than 8 parts", errorOf("\n[[" + key + "]]\n"));
    EXPECT_EQ("1:24: a key has more than 8 parts", errorOf("b = { a . a.a.a.a.a.a.a.a = 1 }\n"));
    EXPECT_EQ("1:33: a key has more than 8 parts",
              errorOf("a = ['''b''''', {c.c.c.c.c.c.c.c.c = 1}]\n"));
    EXPECT_EQ("1:1: unknown key \"a\" in rig", errorOf("a.a.a.a.a.a.a.a = 1\n"));
}

TEST_F(RigDescription, DotsOfNumbersTextsAndCommentsAreNoPartsOfKeys) {
    EXPECT_EQ("1:1: unknown key \"a\" in rig",
              errorOf("a = [1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0]\n"));
    EXPECT_EQ("1:1: unknown key \"b\" in rig", errorOf("b = 'a.b.c.d.e.f.g.h.i.j'\n"));
    EXPECT_EQ("2:1: unknown key \"c\" in rig", errorOf("# a.b.c.d.e.f.g.h.i.j\nc = 1\n"));
    EXPECT_EQ("1:1: unknown key \"d\" in rig", errorOf("d = \"\\\".b.c.d.e.f.g.h.i.j\"\n"));
    EXPECT_EQ("1:1: unknown key \"e\" in rig",
              errorOf("e = \"\"\"\n\".b.c.d.e.f.g.h.i.j\n\\\"\"\".b.c.d.e.f.g.h.i.j\"\"\"\n"));
}

TEST_F(RigDescription, LettersBeyondAsciiStandInQuotes) {
    const std::string words = ": letters beyond ASCII stand in quotes, and not behind a backslash";
    EXPECT_EQ("2:2" + words, errorOf("\nm\xC3\xBC = 1\n"));
    EXPECT_EQ("1:7" + words, errorOf("a = -\"\xC3\xBC\"\n"));
    EXPECT_EQ("1:8" + words, errorOf("a = 5.\"\xC3\xBC\"\n"));
    EXPECT_EQ("1:8" + words, errorOf("a = -=\"\xC3\xBC\"\n"));
    EXPECT_EQ("1:8" + words, errorOf("a = 0{\"\xC3\xBC\"}\n"));
    EXPECT_EQ("1:7" + words, errorOf("a = \"\\\xC3\xBC\"\n"));
    EXPECT_EQ("2:2" + words, errorOf("a = \"\"\"\\\n \xC3\xBC\"\"\"\n"));
    EXPECT_EQ("3:1" + words, errorOf("a = \"\"\"x\\\n \"\"\"\n\xC3\xBC = 1\n"));
    EXPECT_EQ("1:1: unknown key \"m\xC3\xBC\" in rig", errorOf("\"m\xC3\xBC\" = 1\n"));
    EXPECT_EQ("1:1: unknown key \"a\" in rig", errorOf("a = [\"\\\"\xC3\xBC\", '\\\xC3\xBC']\n"));
    EXPECT_EQ("2:1: unknown key \"a\" in rig", errorOf("\xEF\xBB\xBF# \xC3\xBC\na = 1\n"));
}

TEST_F(RigDescription, MissingAndMistypedValuesAreErrorsWithPlace) {
    EXPECT_EQ("1:1: camera needs \"name\"", errorOf("[[camera]]\n"));
    EXPECT_EQ("2:8: name must be a text", errorOf("[[camera]]\nname = 1\n"));
    EXPECT_EQ("3:10: serial must be hexadecimal digits, such as \"1A2B\"",
              errorOf("[[camera]]\nname = \"A\"\nserial = \"xyz\"\n"));
    EXPECT_EQ("3:12: a format ends in its size, such as \"Y800 (640x480)\"",
              errorOf("[[camera]]\nname = \"A\"\nformats = [\"Y800\"]\n"));
    EXPECT_EQ("3:12: width and height must be within 1 and 8192",
              errorOf("[[camera]]\nname = \"A\"\nformats = [\"Y800 (0x480)\"]\n"));
    EXPECT_EQ("3:9: scene must be one of: counter, colorchart, gradient, noise, flat, replay",
              errorOf("[[camera]]\nname = \"A\"\nscene = \"sky\"\n"));
    EXPECT_EQ(
        "3:9: scene must be one of: counter, colorchart, gradient, noise, flat, replay; did "
        "you mean \"counter\"?",
        errorOf("[[camera]]\nname = \"A\"\nscene = \"countr\"\n"));
    EXPECT_EQ("3:15: a frame rate must be above 0",
              errorOf("[[camera]]\nname = \"A\"\nframerates = [0.0]\n"));
    EXPECT_EQ("3:10: format \"Y800 (1x1)\" is not offered; there are none",
              errorOf("[[camera]]\nname = \"A\"\nformat = \"Y800 (1x1)\"\n"));
    EXPECT_EQ("3:1: two cameras are called \"A\"",
              errorOf("[[camera]]\nname = \"A\"\n[[camera]]\nname = \"A\"\n"));
    EXPECT_EQ("1:7: only rig format 1 is known", errorOf("rig = 2\n"));
}

TEST_F(RigDescription, AMistypedNeededKeyIsToldByItsNearName) {
    EXPECT_EQ("2:1: unknown key \"nam\" in camera; did you mean \"name\"?",
              errorOf("[[camera]]\nnam = \"A\"\n"));
    EXPECT_EQ("4:1: unknown key \"nmae\" in item; did you mean \"name\"?",
              errorOf("[[camera]]\nname = \"A\"\n[[camera.item]]\nnmae = \"B\"\n"));
    const std::string item = "[[camera]]\nname = \"A\"\n[[camera.item]]\nname = \"B\"\n";
    EXPECT_EQ("5:17: unknown key \"mn\" in range; did you mean \"min\"?",
              errorOf(item + "Value.range = { mn = 1, max = 2, value = 1 }\n"));
    EXPECT_EQ("5:15: range needs \"min\"",
              errorOf(item + "Value.range = { max = 2, value = 1 }\n"));
    EXPECT_EQ("3:1: item needs \"name\"", errorOf("[[camera]]\nname = \"A\"\n[[camera.item]]\n"));
}

TEST_F(RigDescription, AValueLiesWithinItsLimits) {
    const std::string item = "[[camera]]\nname = \"A\"\n[[camera.item]]\nname = \"B\"\n";
    EXPECT_EQ("5:44: value must be within 0 and 10",
              errorOf(item + "Value.range = { min = 0, max = 10, value = 30 }\n"));
    EXPECT_EQ("5:46: value must be within 0.5 and 10",
              errorOf(item + "Value.abs = { min = 0.5, max = 10.0, value = 0.1 }\n"));
    load(item + "Value.range = { min = 10, max = 0, value = 3 }\n");
    load(item + "Value.range = { min = 5, max = 5, value = 6 }\n");
}

TEST_F(RigDescription, WhatIsOfferedIsNamedAtTheWrongChoice) {
    EXPECT_EQ(
        "4:10: format \"Y800 (9x9)\" is not offered; there are: \"Y800 (8x4)\", \"BY8 (8x4)\"",
        errorOf("[[camera]]\nname = \"A\"\nformats = [\"Y800 (8x4)\", \"BY8 (8x4)\"]\n"
                "format = \"Y800 (9x9)\"\n"));
}

TEST_F(RigDescription, WordsAreTakenInLettersOfAnyCase) {
    load("[[camera]]\nname = \"A\"\nbayer = \"grbg\"\nscene = \"Counter\"\nopen = \"Succeed\"\n");
    EXPECT_EQ((std::vector<std::string>{"A"}), names());
}

// The first column of the guide's table of scenes, against what the parser offers.
TEST_F(RigDescription, TheGuideListsTheScenesThatThereAre) {
    std::ifstream guide(VELMORA_SOURCE_DIR "/docs/rig.md");
    std::string line;
    while (std::getline(guide, line) && line.rfind("| Scene |", 0) != 0) {
    }
    std::getline(guide, line);  // the rule below the heading
    std::vector<std::string> documented;
    while (std::getline(guide, line) && line.rfind("| `", 0) == 0) {
        documented.push_back(line.substr(3, line.find('`', 3) - 3));
    }
    const std::string offered = errorOf("[[camera]]\nname = \"A\"\nscene = \"\"\n");
    std::vector<std::string> known;
    for (std::size_t at = offered.find(": ", 5); at != std::string::npos;) {
        const std::size_t end = offered.find(", ", at + 2);
        known.push_back(offered.substr(at + 2, end - at - 2));
        at = end;
    }
    std::sort(documented.begin(), documented.end());
    std::sort(known.begin(), known.end());
    EXPECT_EQ(known, documented);
}

TEST_F(RigDescription, TextThatIsNoTomlIsAnErrorWithPlace) {
    EXPECT_EQ("1:", errorOf("[[camera\n").substr(0, 2));
}

TEST_F(RigDescription, AnErrorLeavesTheRigAsItIs) {
    load("[[camera]]\nname = \"A\"\n");
    errorOf("nonsense = 1\n");
    EXPECT_EQ((std::vector<std::string>{"A"}), names());
}

TEST_F(RigDescription, BuiltInRigsAreChosenByName) {
    for (const char* rig :
         {"standard", "empty", "failing-open", "throwing", "odd", "no-properties", "bare"}) {
        choose(rig);
    }
    char message[128] = "";
    EXPECT_EQ(1, virtualCamerasChooseRig("standart", message, sizeof(message)));
    EXPECT_STREQ("1:1: there is no built-in rig \"standart\"", message);
    EXPECT_EQ(1, virtualCamerasChooseRig("standard:sky", message, sizeof(message)));
    EXPECT_STREQ("1:10: there is no scene \"sky\"", message);
}

TEST_F(RigDescription, TheStandardRigHasFiveCamerasInOrder) {
    EXPECT_EQ((std::vector<std::string>{"SIM Mono 23", "SIM Colour 5", "SIM Colour 1", "QRM 52",
                                        "SIM Frame Grabber"}),
              names());
    choose("empty");
    EXPECT_TRUE(names().empty());
}

TEST_F(RigDescription, NamesModelsAndSerialsAreAsWritten) {
    load(
        "[[camera]]\nname = \"Nä\"\nmodel = \"Mø\"\nserial = \"FEDCBA9876543210\"\n"
        "[[camera]]\nname = \"B\"\n");
    DShowLib::Grabber grabber;
    const auto devices = toStandard(grabber.getAvailableVideoCaptureDevices_());
    ASSERT_EQ(2U, devices.size());
    EXPECT_STREQ("Nä", devices[0].c_str());
    EXPECT_EQ(L"M\u00F8", toStandard(devices[0].getFriendlyName_()));
    std::int64_t serial = 5;
    EXPECT_TRUE(devices[0].getSerialNumber(serial));
    EXPECT_EQ(-0x123456789ABCDF0, serial);
    serial = 5;
    EXPECT_FALSE(devices[1].getSerialNumber(serial));
    EXPECT_EQ(5, serial);
    EXPECT_EQ(L"B", toStandard(devices[1].getFriendlyName_()));
}

TEST_F(RigDescription, MissingListsAndEmptyOnesAreTwoThings) {
    choose("bare");
    DShowLib::Grabber missing;
    ASSERT_TRUE(open(missing, 0));
    EXPECT_FALSE(missing.getAvailableVideoFormats_(missing.getVideoNorm()));
    EXPECT_FALSE(missing.getAvailableVideoNorms_());
    EXPECT_FALSE(missing.getAvailableInputChannels_());
    EXPECT_FALSE(missing.isInputChannelAvailableWithCurDev());
    EXPECT_FALSE(missing.isFrameRateListAvailable());
    EXPECT_STREQ("", missing.getVideoFormat().c_str());
    EXPECT_EQ(0, missing.getAcqSizeMaxX());
    DShowLib::Grabber empty;
    ASSERT_TRUE(open(empty, 1));
    const auto formats = empty.getAvailableVideoFormats_(empty.getVideoNorm());
    ASSERT_TRUE(formats);
    EXPECT_TRUE(formats->empty());
    ASSERT_TRUE(empty.getAvailableVideoNorms_());
    EXPECT_TRUE(empty.getAvailableVideoNorms_()->empty());
    ASSERT_TRUE(empty.getAvailableInputChannels_());
    EXPECT_TRUE(empty.isInputChannelAvailableWithCurDev());
    EXPECT_TRUE(empty.isFrameRateListAvailable());
    EXPECT_EQ("", misuse());
}

TEST_F(RigDescription, NarrowAndWideTextsMayDiffer) {
    load(
        "[[camera]]\nname = \"A\"\nformats = [{ name = \"narrow\", text = \"wide\", width = 8, "
        "height = 2 }]\nchannels = [{ name = \"one\", text = \"two\" }]\n");
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    const auto format = grabber.getVideoFormat();
    EXPECT_STREQ("narrow", format.c_str());
    EXPECT_EQ("wide", toNarrow(format.toString_()));
    EXPECT_STREQ("one", grabber.getInputChannel().c_str());
    EXPECT_EQ("two", toNarrow(grabber.getInputChannel().toString_()));
    EXPECT_EQ(8, grabber.getAcqSizeMaxX());
    EXPECT_EQ(2, grabber.getAcqSizeMaxY());
}

TEST_F(RigDescription, ElementsAndInterfacesKeepTheOrderOfTheFile) {
    load(
        "[[camera]]\nname = \"A\"\n[[camera.item]]\nname = \"I\"\nZulu.switch = true\n"
        "Alpha.strings = { choices = [\"b\"] }\nAlpha.button = true\nAlpha.abs = { min = 0, max = "
        "1, value = 0.5 }\nMike.range = { min = 0, max = 1, value = 0 }\n");
    DShowLib::Grabber grabber;
    ASSERT_TRUE(open(grabber, 0));
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
    ASSERT_EQ(S_OK, grabber.getAvailableVCDProperties()->getItem(1, item.put()));
    std::string order;
    for (LONG i = 1; i <= 3; ++i) {
        DShowLib::smart_com<DShowLib::IVCDPropertyElement> element;
        ASSERT_EQ(S_OK, item->getItem(i, element.put()));
        CComText name;
        ASSERT_EQ(S_OK, element->getName(name.put()));
        LONG count = 0;
        ASSERT_EQ(S_OK, element->getCount(&count));
        order += name.narrow() + ":";
        for (LONG j = 1; j <= count; ++j) {
            DShowLib::smart_com<DShowLib::IVCDPropertyInterface> any;
            ASSERT_EQ(S_OK, element->getItem(j, any.put()));
            GUID identifier{};
            ASSERT_EQ(S_OK, any->getInterfaceID(&identifier));
            order += std::to_string(identifier.Data4[7]);
        }
        order += " ";
    }
    EXPECT_EQ("Zulu:4 Alpha:658 Mike:3 ", order);
}

}  // namespace
}  // namespace camera_tests
