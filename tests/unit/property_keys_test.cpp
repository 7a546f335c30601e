// SPDX-License-Identifier: MIT
// How keys are made, matched, numbered and listed.
#include "properties/property_keys.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace {

using Keys = std::unordered_set<std::string>;

std::string uniqueAmong(const Keys& taken, std::string_view key) {
    return uniqueKey(
        key, [&taken](std::string_view asked) { return taken.contains(std::string(asked)); });
}

TEST(Lowered, LowersAsciiLettersOnly) {
    EXPECT_EQ("abcdefghijklmnopqrstuvwxyz", lowered("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_EQ("abcxyz", lowered("abcxyz"));
    EXPECT_EQ("@[`{ 09_-\t", lowered("@[`{ 09_-\t"));
    EXPECT_EQ("", lowered(""));
}

TEST(Lowered, EveryByteFrom128OnStaysAsItIs) {
    for (int byte = 128; byte < 256; ++byte) {
        const auto character = static_cast<char>(static_cast<unsigned char>(byte));
        EXPECT_EQ(character, lowered(character)) << byte;
    }
    EXPECT_EQ("\xC3\x84h\xC0", lowered("\xC3\x84H\xC0"));
}

TEST(Lowered, TheLocaleOfTheHostDoesNotMatter) {
    for (const char* name : {"tr_TR.UTF-8", "Turkish", "de_DE.ISO-8859-1", "German", "C.UTF-8"}) {
        std::setlocale(LC_ALL, name);
        EXPECT_EQ("i\xC4", lowered("I\xC4")) << name;
    }
    std::setlocale(LC_ALL, "C");
}

TEST(NormalisedKey, IsLoweredAndTrimmedAtTheEndOnly) {
    EXPECT_EQ("framerate", normalisedKey("FRAMERATE   "));
    EXPECT_EQ("exposure value abs", normalisedKey("Exposure Value Abs"));
    EXPECT_EQ(" framerate", normalisedKey(" FrameRate"));
    EXPECT_EQ("frame  rate", normalisedKey("frame  rate "));
}

TEST(NormalisedKey, BlanksAloneBecomeTheEmptyKey) {
    EXPECT_EQ("", normalisedKey(""));
    EXPECT_EQ("", normalisedKey(" "));
    EXPECT_EQ("", normalisedKey("      "));
}

TEST(NormalisedKey, OtherWhiteSpaceIsNoBlank) {
    EXPECT_EQ("framerate\t", normalisedKey("framerate\t"));
    EXPECT_EQ("framerate\n", normalisedKey("framerate\n "));
    EXPECT_EQ("framerate\xA0", normalisedKey("framerate\xA0"));
}

TEST(NormalisedKey, LongerThanAnyKeyStaysLongerThanAnyKey) {
    EXPECT_EQ(std::string(258, 'x'), normalisedKey(std::string(258, 'X')));
    EXPECT_EQ(std::string(259, 'x'), normalisedKey(std::string(259, 'X')));
    EXPECT_EQ(std::string(259, 'x'), normalisedKey(std::string(100000, 'X')));
    EXPECT_EQ(std::string(258, 'x'), normalisedKey(std::string(258, 'x') + std::string(9000, ' ')));
}

TEST(BaseKey, JoinsTheLoweredNamesWithOneBlank) {
    EXPECT_EQ("brightness value", baseKey("Brightness", "Value"));
    EXPECT_EQ("white balance one push", baseKey("White Balance", "One Push"));
    EXPECT_EQ("gain  ", baseKey("Gain ", ""));
    EXPECT_EQ(" ", baseKey("", ""));
    EXPECT_EQ("\xC3\x84pfel value", baseKey("\xC3\x84PFEL", "VALUE"));
}

TEST(UniqueKey, FreeKeyStaysAsItIs) {
    EXPECT_EQ("gain value range", uniqueAmong({}, "gain value range"));
    EXPECT_EQ("gain value range",
              uniqueAmong({"gain value rang", "gain value range1"}, "gain value range"));
    EXPECT_EQ("", uniqueAmong({}, ""));
}

TEST(UniqueKey, TakenKeyGetsTheFirstFreeNumber) {
    EXPECT_EQ("x range1", uniqueAmong({"x range"}, "x range"));
    EXPECT_EQ("x range2", uniqueAmong({"x range", "x range1"}, "x range"));
    EXPECT_EQ("x range1", uniqueAmong({"x range", "x range2"}, "x range"));
    EXPECT_EQ("1", uniqueAmong({""}, ""));
}

TEST(UniqueKey, NumbersFollowTheKeyAsItWasGiven) {
    Keys taken;
    for (const char* expected :
         {"x range", "x range1", "x range2", "x range3", "x range4", "x range5", "x range6",
          "x range7", "x range8", "x range9", "x range10", "x range11"}) {
        const std::string key = uniqueAmong(taken, "x range");
        EXPECT_EQ(expected, key);
        taken.insert(key);
    }
}

TEST(UniqueKey, IsCutTo254Characters) {
    EXPECT_EQ(std::string(253, 'k'), uniqueAmong({}, std::string(253, 'k')));
    EXPECT_EQ(std::string(254, 'k'), uniqueAmong({}, std::string(254, 'k')));
    EXPECT_EQ(std::string(254, 'k'), uniqueAmong({}, std::string(255, 'k')));
    EXPECT_EQ(std::string(254, 'k'), uniqueAmong({}, std::string(5000, 'k')));
}

TEST(UniqueKey, NumberStandsWhereTheBoundWouldCutIt) {
    const Keys taken = {std::string(254, 'k'), std::string(253, 'k'), std::string(252, 'k')};
    EXPECT_EQ(std::string(252, 'k') + "1", uniqueAmong(taken, std::string(252, 'k')));
    EXPECT_EQ(std::string(253, 'k') + "1", uniqueAmong(taken, std::string(253, 'k')));
    EXPECT_EQ(std::string(253, 'k') + "1", uniqueAmong(taken, std::string(254, 'k')));
    EXPECT_EQ(std::string(253, 'k') + "1", uniqueAmong(taken, std::string(255, 'k')));
    EXPECT_EQ(std::string(253, 'k') + "1", uniqueAmong(taken, std::string(5000, 'k')));
}

TEST(UniqueKey, EndsForLongKeysHoweverManyAreTaken) {
    Keys taken;
    const std::string longKey(300, 'k');
    for (int i = 0; i < 1100; ++i) {
        const std::string key = uniqueAmong(taken, longKey);
        ASSERT_EQ(254U, key.size());
        ASSERT_TRUE(taken.insert(key).second) << key;
    }
    EXPECT_TRUE(taken.contains(std::string(253, 'k') + "9"));
    EXPECT_TRUE(taken.contains(std::string(252, 'k') + "10"));
    EXPECT_TRUE(taken.contains(std::string(251, 'k') + "999"));
    EXPECT_TRUE(taken.contains(std::string(250, 'k') + "1000"));
}

TEST(UniqueKey, AsksForTheKeyFirstAndThenForEachNumber) {
    std::vector<std::string> asked;
    uniqueKey("x", [&asked](std::string_view key) {
        asked.emplace_back(key);
        return asked.size() < 4;
    });
    EXPECT_EQ((std::vector<std::string>{"x", "x1", "x2", "x3"}), asked);
}

TEST(NumberedKey, IsThePrefixAndTheNumberInDecimal) {
    EXPECT_EQ("videoformat_0", numberedKey(videoFormatPrefix, 0));
    EXPECT_EQ("videoformat_10", numberedKey(videoFormatPrefix, 10));
    EXPECT_EQ("feature_1", numberedKey(featurePrefix, 1));
    EXPECT_EQ("execute_123", numberedKey(executePrefix, 123));
    EXPECT_EQ("feature_2147483647",
              numberedKey(featurePrefix, std::numeric_limits<std::int32_t>::max()));
}

TEST(ListedKeys, FixedKeysAndKindsAreShown) {
    for (const char* key :
         {"framerate", "videoformat", "videoformats", "videonorm", "videonorms", "inputchannel",
          "inputchannels", "pixelformat", "brightness value range", "exposure auto switch",
          "white balance mode strings", "exposure value abs", "x range1", "gain value rangemin",
          "minimum", "maximum", ""}) {
        EXPECT_TRUE(isListedKey(key)) << key;
    }
}

TEST(ListedKeys, CompanionsListEntriesAndNumberedFormatsAreHidden) {
    for (const char* key :
         {"brightness value range min", "brightness value range max", "x range1 min",
          "exposure value abs max", "videoformat_0", "feature_1", "execute_1"}) {
        EXPECT_FALSE(isListedKey(key)) << key;
    }
}

TEST(ListedKeys, EachHiddenTextCountsAnywhereInTheKey) {
    for (const char* key :
         {"binning", "binning factor range", "horizontal binning value", "auto min value range",
          "auto maximum range", " min", " max", "special feature switch", "feature", "execute",
          "one execute switch", "_", "gain_db value range", "range_"}) {
        EXPECT_FALSE(isListedKey(key)) << key;
    }
}

TEST(ListedKeys, HiddenTextsAreMatchedWithTheirCase) {
    EXPECT_TRUE(isListedKey("Binning value range"));
    EXPECT_TRUE(isListedKey("x MIN"));
    EXPECT_TRUE(isListedKey("FEATURE"));
}

TEST(SwitchKeys, SuffixCountsAnywhereInTheKey) {
    EXPECT_TRUE(isSwitchKey("exposure auto switch"));
    EXPECT_TRUE(isSwitchKey("exposure auto switch1"));
    EXPECT_TRUE(isSwitchKey("x switch value range"));
    EXPECT_TRUE(isSwitchKey(" switch"));
    EXPECT_FALSE(isSwitchKey("switch"));
    EXPECT_FALSE(isSwitchKey("exposure auto_switch"));
    EXPECT_FALSE(isSwitchKey("exposure auto Switch"));
    EXPECT_FALSE(isSwitchKey(""));
}

TEST(WellKnownKeys, AreTheOnesThatHostsKnow) {
    EXPECT_EQ("contrast value range", contrastKey);
    EXPECT_EQ("brightness value range", brightnessKey);
    EXPECT_EQ("exposure value abs", exposureKey);
    EXPECT_EQ("exposure auto switch", exposureAutoKey);
    EXPECT_EQ("trigger enable switch", triggerEnableKey);
    EXPECT_EQ("trigger polarity switch", triggerPolarityKey);
    EXPECT_EQ("videoformat", videoFormatKey);
    EXPECT_EQ(" range", rangeSuffix);
    EXPECT_EQ(" switch", switchSuffix);
    EXPECT_EQ(" strings", stringsSuffix);
    EXPECT_EQ(" abs", absoluteSuffix);
    EXPECT_EQ(" min", minimumSuffix);
    EXPECT_EQ(" max", maximumSuffix);
}

}  // namespace
