// SPDX-License-Identifier: MIT
#include "camhost/base/texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/name_search.h"
#include "camhost/base/number_texts.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextTools, LowersAsciiOnly) {
    EXPECT_EQ(lowered("ABC\xC3\x84z"), "abc\xC3\x84z");
}

TEST(TextTools, KeysLoseBlanksAtTheEndOnly) {
    EXPECT_EQ(normalisedKey(" FrameRate  "), " framerate");
    EXPECT_EQ(normalisedKey("   "), "");
}

TEST(TextTools, SplitKeepsEmptyPartsButMakesNoneOfNothing) {
    EXPECT_THAT(split("a,,b", ','), ElementsAre("a", "", "b"));
    EXPECT_THAT(split("", ','), IsEmpty());
}

TEST(TextTools, EditDistanceCountsASwapAsOne) {
    EXPECT_EQ(editDistance("gain", "gian"), 1U);
    EXPECT_EQ(editDistance("gain", "gain"), 0U);
    EXPECT_EQ(editDistance("", "abc"), 3U);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
}

TEST(TextTools, NearNamesFindTypingErrorsNearestFirst) {
    EXPECT_THAT(nearNames("gian value range", {"brightness value range", "gain value range"}),
                ElementsAre("gain value range"));
    EXPECT_THAT(nearNames("get", {"grab", "set", "get1"}), ElementsAre("set", "get1"));
}

TEST(TextTools, NearNamesFindPartsAndStopAtThree) {
    EXPECT_THAT(nearNames("expo", {"exposure a", "exposure b", "exposure c", "exposure d"}),
                ElementsAre("exposure a", "exposure b", "exposure c"));
    EXPECT_THAT(nearNames("", {"a", "b"}), IsEmpty());
    EXPECT_THAT(nearNames("zzzzzz", {"gain value range"}), IsEmpty());
}

TEST(TextTools, PatternsMatchPartsOrWithStarsTheWhole) {
    EXPECT_TRUE(matchesPattern("exposure value abs", "Value"));
    EXPECT_TRUE(matchesPattern("exposure value abs", ""));
    EXPECT_TRUE(matchesPattern("exposure value abs", "exp*abs"));
    EXPECT_TRUE(matchesPattern("gain", "g?in"));
    EXPECT_FALSE(matchesPattern("exposure value abs", "value*"));
    EXPECT_FALSE(matchesPattern("gain", "g?n"));
}

TEST(TextTools, ColumnsCountCharactersNotBytes) {
    EXPECT_EQ(padded("\xC3\xA4", 3), "\xC3\xA4  ");
    EXPECT_EQ(displayWidth("a\xC3\xA4"), 2U);
}

TEST(TextTools, ControlCharactersBecomeBlanks) {
    EXPECT_EQ(printable("a\x1B[2J\nb"), "a [2J b");
}

TEST(TextTools, ListsReadAsASentence) {
    EXPECT_EQ(quotedList({"a"}), "\"a\"");
    EXPECT_EQ(quotedList({"a", "b", "c"}), "\"a\", \"b\" or \"c\"");
}

TEST(TextTools, NumbersHaveADecimalPoint) {
    EXPECT_EQ(fixedText(29.94, 1), "29.9");
    EXPECT_EQ(fixedText(-3.0, 0), "-3");
}

TEST(TextTools, FoldingKnowsTheCapitalsOfThreeAlphabets) {
    EXPECT_EQ(folded("S\xC3\x9C"
                     "D \xC3\x97 \xC5\xBD \xC4\xB9"),
              "s\xC3\xBC"
              "d \xC3\x97 \xC5\xBE \xC4\xBA");
    EXPECT_EQ(folded("\xCE\xA9 \xD0\x96 \xD0\x81"), "\xCF\x89 \xD0\xB6 \xD1\x91");
    EXPECT_EQ(folded("\xE2\x82\xAC\xFF"
                     "A"),
              "\xE2\x82\xAC\xFF"
              "a");
}

TEST(TextTools, ABeginningIsNearWhenNothingWholeIs) {
    const std::vector<std::string> keys{"framerate", "gain auto switch", "gain value range"};
    EXPECT_EQ(nearNames("gian", keys),
              (std::vector<std::string>{"gain auto switch", "gain value range"}));
    EXPECT_EQ(nearNames("gian value", keys), (std::vector<std::string>{"gain value range"}));
    EXPECT_EQ(nearNames("gian value range", keys), (std::vector<std::string>{"gain value range"}));
    EXPECT_TRUE(nearNames("zoom", keys).empty());
}

}  // namespace
}  // namespace camhost
