// SPDX-License-Identifier: MIT
#include "camhost/settings/value_guards.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/number_texts.h"
#include "camhost/settings/refusal_texts.h"

namespace camhost {
namespace {

using testing::ElementsAre;

TEST(ValueGuards, IntegersMustBeWhole) {
    EXPECT_EQ(wholeInteger("12"), 12);
    EXPECT_EQ(wholeInteger("-7"), -7);
    EXPECT_EQ(wholeInteger("+7"), 7);
    EXPECT_EQ(wholeInteger("2147483647"), 2147483647);
    for (const char* text : {"", "12abc", "abc", " 12", "12 ", "1.5", "+-7", "2147483648"}) {
        EXPECT_EQ(wholeInteger(text), std::nullopt) << text;
    }
}

TEST(ValueGuards, NumbersMustBeWholeAndFinite) {
    EXPECT_EQ(wholeNumber("0.25"), 0.25);
    EXPECT_EQ(wholeNumber("1e-3"), 0.001);
    for (const char* text : {"", "0.25s", "inf", "nan", "1e999", "0,5", "0x10"}) {
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
    }
}

TEST(ValueGuards, SwitchesTakeEightWords) {
    for (const char* text : {"on", "1", "yes", "TRUE"}) {
        EXPECT_EQ(booleanText(text), true) << text;
    }
    for (const char* text : {"off", "0", "No", "false"}) {
        EXPECT_EQ(booleanText(text), false) << text;
    }
    EXPECT_EQ(booleanText("enabled"), std::nullopt);
}

TEST(ValueGuards, GuardedValuesAreWhatTheAdapterReadsRight) {
    std::string reason;
    EXPECT_EQ(guardedValue(SettingType::Boolean, "on", reason), "true");
    EXPECT_EQ(guardedValue(SettingType::Boolean, "0", reason), "false");
    EXPECT_EQ(guardedValue(SettingType::Integer, "+5", reason), "5");
    EXPECT_EQ(guardedValue(SettingType::Choice, "Any Text", reason), "Any Text");
    EXPECT_EQ(guardedValue(SettingType::Integer, "12abc", reason), std::nullopt);
    EXPECT_EQ(reason, "takes a whole number");
    EXPECT_EQ(guardedValue(SettingType::Float, "fast", reason), std::nullopt);
    EXPECT_EQ(reason, "takes a number");
    EXPECT_EQ(guardedValue(SettingType::Boolean, "maybe", reason), std::nullopt);
    EXPECT_EQ(reason, "takes true or false (also on/off, yes/no, 1/0)");
}

TEST(ValueGuards, ReadBackMayDifferInTheSeventhDecimalOnly) {
    EXPECT_TRUE(sameValue(SettingType::Float, "0.01", "0.010000"));
    EXPECT_TRUE(sameValue(SettingType::Float, "0.0333333333", "0.033333"));
    EXPECT_FALSE(sameValue(SettingType::Float, "0.01", "0.010001"));
    EXPECT_TRUE(sameValue(SettingType::Integer, "012", "12"));
    EXPECT_FALSE(sameValue(SettingType::Integer, "12", "13"));
    EXPECT_TRUE(sameValue(SettingType::Boolean, "TRUE", "true"));
    EXPECT_FALSE(sameValue(SettingType::Choice, "edge", "Edge"));
}

TEST(ValueGuards, ChoicesAreReadFromARefusal) {
    const auto valid = parseValidValues("Valid values are:\"Edge\" \"Level \"high\"\" ");
    ASSERT_TRUE(valid);
    EXPECT_THAT(valid->values, ElementsAre("Edge", "Level \"high\""));
    EXPECT_TRUE(valid->complete);
}

TEST(ValueGuards, AChoiceThatWasCutOffIsLeftOut) {
    const auto valid = parseValidValues("Valid values are:\"Edge\" \"Lev");
    ASSERT_TRUE(valid);
    EXPECT_THAT(valid->values, ElementsAre("Edge"));
    EXPECT_FALSE(valid->complete);
    EXPECT_FALSE(parseValidValues("Something else"));
}

TEST(ValueGuards, LimitsAreReadFromARefusal) {
    const auto rate = parseLimits("The frame rate must be between 3.750000 and 60.000000.");
    ASSERT_TRUE(rate);
    EXPECT_EQ(rate->low, "3.750000");
    EXPECT_EQ(rate->high, "60.000000");
    const auto gain = parseLimits("gain value range must be within -5 and 10!");
    ASSERT_TRUE(gain);
    EXPECT_EQ(gain->low, "-5");
    EXPECT_EQ(gain->high, "10");
    EXPECT_FALSE(parseLimits("No frame rates available!"));
    EXPECT_FALSE(parseLimits("must be between you and me"));
}

}  // namespace
}  // namespace camhost
