// SPDX-License-Identifier: MIT
// Numbers out of the host's texts, and the arithmetic on them.
#include "properties/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::int32_t lowest = -2147483647 - 1;

TEST(ParseInteger, ReadsDigitsWithAnOptionalSign) {
    EXPECT_EQ(0, parseInteger("0"));
    EXPECT_EQ(7, parseInteger("7"));
    EXPECT_EQ(128, parseInteger("128"));
    EXPECT_EQ(128, parseInteger("+128"));
    EXPECT_EQ(-128, parseInteger("-128"));
    EXPECT_EQ(12, parseInteger("0012"));
    EXPECT_EQ(0, parseInteger("-0"));
}

TEST(ParseInteger, SkipsEveryKindOfLeadingWhiteSpace) {
    EXPECT_EQ(5, parseInteger(" 5"));
    EXPECT_EQ(5, parseInteger("\t5"));
    EXPECT_EQ(5, parseInteger("\n5"));
    EXPECT_EQ(5, parseInteger("\v5"));
    EXPECT_EQ(5, parseInteger("\f5"));
    EXPECT_EQ(5, parseInteger("\r5"));
    EXPECT_EQ(-5, parseInteger(" \t\n\v\f\r -5"));
    EXPECT_EQ(0, parseInteger("\xA0"
                              "5"));
}

TEST(ParseInteger, IgnoresWhatFollowsTheNumber) {
    EXPECT_EQ(12, parseInteger("12abc"));
    EXPECT_EQ(12, parseInteger("12 34"));
    EXPECT_EQ(12, parseInteger("12.9"));
    EXPECT_EQ(12, parseInteger("12e3"));
    EXPECT_EQ(12, parseInteger("12-3"));
}

TEST(ParseInteger, TextThatBeginsWithNoNumberIsZero) {
    for (const char* text :
         {"", " ", "abc", "x5", "+", "-", "--5", "+-5", "- 5", ".5", "e5", "\"5\""}) {
        EXPECT_EQ(0, parseInteger(text)) << text;
    }
}

TEST(ParseInteger, HexadecimalDigitsAreNoDigits) {
    EXPECT_EQ(0, parseInteger("0x1F"));
    EXPECT_EQ(1, parseInteger("1F"));
    EXPECT_EQ(0, parseInteger("F"));
    EXPECT_EQ(10, parseInteger("010"));
}

TEST(ParseInteger, ReachesBothLimits) {
    EXPECT_EQ(2147483647, parseInteger("2147483647"));
    EXPECT_EQ(2147483646, parseInteger("2147483646"));
    EXPECT_EQ(lowest, parseInteger("-2147483648"));
    EXPECT_EQ(-2147483647, parseInteger("-2147483647"));
}

TEST(ParseInteger, SaturatesBeyondTheLimits) {
    EXPECT_EQ(2147483647, parseInteger("2147483648"));
    EXPECT_EQ(2147483647, parseInteger("4294967296"));
    EXPECT_EQ(2147483647, parseInteger("9223372036854775808"));
    EXPECT_EQ(2147483647, parseInteger("18446744073709551617"));
    EXPECT_EQ(2147483647, parseInteger(std::string(400, '9')));
    EXPECT_EQ(lowest, parseInteger("-2147483649"));
    EXPECT_EQ(lowest, parseInteger("-4294967296"));
    EXPECT_EQ(lowest, parseInteger("-18446744073709551617"));
    EXPECT_EQ(lowest, parseInteger("-" + std::string(400, '9')));
}

TEST(ParseInteger, StopsAtTheEndOfAPartOfALargerText) {
    EXPECT_EQ(12, parseInteger(std::string_view("12345", 2)));
    EXPECT_EQ(0, parseInteger(std::string_view("-5", 1)));
}

TEST(ParseFloat, ReadsDigitsAndAPoint) {
    EXPECT_EQ(0.0, parseFloat("0"));
    EXPECT_EQ(30.0, parseFloat("30"));
    EXPECT_EQ(3.75, parseFloat("3.75"));
    EXPECT_EQ(-3.75, parseFloat("-3.75"));
    EXPECT_EQ(3.75, parseFloat("+3.75"));
    EXPECT_EQ(60.001, parseFloat("60.001"));
    EXPECT_EQ(0.1, parseFloat("0.1"));
    EXPECT_EQ(7.5, parseFloat("0007.5000"));
}

TEST(ParseFloat, DigitsMayStandOnOneSideOfThePointOnly) {
    EXPECT_EQ(0.5, parseFloat(".5"));
    EXPECT_EQ(-0.5, parseFloat("-.5"));
    EXPECT_EQ(5.0, parseFloat("5."));
    EXPECT_EQ(5.0, parseFloat("5.x"));
    EXPECT_EQ(5000.0, parseFloat("5.e3"));
    EXPECT_EQ(500.0, parseFloat(".5e3"));
}

TEST(ParseFloat, ReadsAnExponent) {
    EXPECT_EQ(1000.0, parseFloat("1e3"));
    EXPECT_EQ(1000.0, parseFloat("1E3"));
    EXPECT_EQ(1000.0, parseFloat("1e+3"));
    EXPECT_EQ(0.125, parseFloat("125e-3"));
    EXPECT_EQ(125000.0, parseFloat("1.25E0005"));
    EXPECT_EQ(1.0, parseFloat("1e0"));
    EXPECT_EQ(1.0, parseFloat("1e-0"));
}

TEST(ParseFloat, IncompleteExponentIsWhatFollowsTheNumber) {
    for (const char* text : {"1e", "1e+", "1e-", "1ex", "1e+x", "1e 3", "1e.5", "1e+-3", "1ee3"}) {
        EXPECT_EQ(1.0, parseFloat(text)) << text;
    }
}

TEST(ParseFloat, IgnoresWhatFollowsTheNumber) {
    EXPECT_EQ(1.5, parseFloat("1.5fps"));
    EXPECT_EQ(1.5, parseFloat("1.5.5"));
    EXPECT_EQ(1.5, parseFloat("1.5 2"));
    EXPECT_EQ(1.0, parseFloat("1,5"));
    EXPECT_EQ(100.0, parseFloat("1e2e3"));
    EXPECT_EQ(100.0, parseFloat("1e2.5"));
}

TEST(ParseFloat, TextThatBeginsWithNoNumberIsZero) {
    for (const char* text : {"", " ", "abc", "+", "-", ".", "-.", "-.e3", ".e3", "e3", "--1", "+-1",
                             "- 1", "..5", "+ .5", ",5"}) {
        EXPECT_EQ(0.0, parseFloat(text)) << text;
    }
}

TEST(ParseFloat, SkipsEveryKindOfLeadingWhiteSpace) {
    for (const char* text :
         {" 2.5", "\t2.5", "\n2.5", "\v2.5", "\f2.5", "\r2.5", " \t\n\v\f\r2.5"}) {
        EXPECT_EQ(2.5, parseFloat(text));
    }
    EXPECT_EQ(0.0, parseFloat("\xA0"
                              "2.5"));
}

TEST(ParseFloat, KnowsNoHexadecimalNumbers) {
    EXPECT_EQ(0.0, parseFloat("0x10"));
    EXPECT_EQ(0.0, parseFloat("0x1.8p3"));
    EXPECT_EQ(0.0, parseFloat("-0X1F"));
    EXPECT_EQ(1.0, parseFloat("1p3"));
}

TEST(ParseFloat, KnowsNoInfinityAndNoNotANumber) {
    for (const char* text : {"inf", "INF", "-inf", "+infinity", "nan", "NAN", "-nan", "nan(1)"}) {
        EXPECT_EQ(0.0, parseFloat(text)) << text;
    }
}

TEST(ParseFloat, NegativeZeroKeepsItsSign) {
    EXPECT_TRUE(std::signbit(parseFloat("-0")));
    EXPECT_TRUE(std::signbit(parseFloat("-0.0e5")));
    EXPECT_FALSE(std::signbit(parseFloat("0")));
}

TEST(ParseFloat, NoNumberAtAllIsZeroWithoutASign) {
    for (const char* text : {"-", "-x", "-.", "-.e3", "-inf"}) {
        EXPECT_FALSE(std::signbit(parseFloat(text))) << text;
    }
}

TEST(ParseFloat, RoundsToTheNearestDouble) {
    EXPECT_EQ(9007199254740992.0, parseFloat("9007199254740993"));
    EXPECT_EQ(9007199254740996.0, parseFloat("9007199254740995"));
    EXPECT_EQ(0.30000000000000004, parseFloat("0.30000000000000004"));
    EXPECT_EQ(1.7976931348623157e308, parseFloat("1.7976931348623157e308"));
}

TEST(ParseFloat, SmallestNumbersAreRead) {
    EXPECT_EQ(2.2250738585072014e-308, parseFloat("2.2250738585072014e-308"));
    EXPECT_EQ(4.9406564584124654e-324, parseFloat("4.9406564584124654e-324"));
    EXPECT_EQ(4.9406564584124654e-324, parseFloat("3e-324"));
}

TEST(ParseFloat, TooLargeANumberIsInfinite) {
    EXPECT_EQ(infinity, parseFloat("1e309"));
    EXPECT_EQ(-infinity, parseFloat("-1e309"));
    EXPECT_EQ(infinity, parseFloat("1.7976931348623159e308"));
    EXPECT_EQ(infinity, parseFloat("1e2147483647"));
    EXPECT_EQ(infinity, parseFloat("1e2147483648"));
    EXPECT_EQ(infinity, parseFloat("1e99999999999999999999999"));
    EXPECT_EQ(infinity, parseFloat("0.0001e+400"));
    EXPECT_EQ(infinity, parseFloat(std::string(400, '9')));
    EXPECT_EQ(infinity, parseFloat(std::string(400, '9') + "." + std::string(400, '9')));
    EXPECT_EQ(infinity, parseFloat(std::string(700, '9') + "e-300"));
}

TEST(ParseFloat, TooSmallANumberIsZero) {
    EXPECT_EQ(0.0, parseFloat("1e-400"));
    EXPECT_EQ(0.0, parseFloat("2e-324"));
    EXPECT_EQ(0.0, parseFloat("1e-2147483648"));
    EXPECT_EQ(0.0, parseFloat("1e-99999999999999999999999"));
    EXPECT_EQ(0.0, parseFloat("1000e-400"));
    EXPECT_EQ(0.0, parseFloat("0." + std::string(400, '0') + "1"));
    EXPECT_EQ(0.0, parseFloat("." + std::string(700, '0') + "1e+300"));
    EXPECT_TRUE(std::signbit(parseFloat("-1e-400")));
    EXPECT_EQ(0.0, parseFloat("0." + std::string(400, '0') + "1x999")) << "no exponent";
}

TEST(ParseFloat, ZeroStaysZeroWhateverTheExponent) {
    EXPECT_EQ(0.0, parseFloat("0e999"));
    EXPECT_EQ(0.0, parseFloat("0e99999999999999999999"));
    EXPECT_EQ(0.0, parseFloat("0.000e-99999999999999999999"));
}

TEST(ParseFloat, ManyDigitsAndAnOppositeExponentCancel) {
    EXPECT_EQ(1.0, parseFloat("1" + std::string(400, '0') + "e-400"));
    EXPECT_EQ(1.0, parseFloat("0." + std::string(399, '0') + "1e400"));
}

TEST(ParseFloat, StopsAtTheEndOfAPartOfALargerText) {
    EXPECT_EQ(1.0, parseFloat(std::string_view("1.5", 2)));
    EXPECT_EQ(1.0, parseFloat(std::string_view("1e55", 2)));
    EXPECT_EQ(100000.0, parseFloat(std::string_view("1e55", 3)));
    EXPECT_EQ(0.0, parseFloat(std::string_view("-.5", 2)));
}

TEST(TruncateToInteger, DropsTheFractionTowardZero) {
    EXPECT_EQ(0, truncateToInteger(0.0));
    EXPECT_EQ(0, truncateToInteger(0.999));
    EXPECT_EQ(0, truncateToInteger(-0.999));
    EXPECT_EQ(2, truncateToInteger(2.5));
    EXPECT_EQ(-2, truncateToInteger(-2.5));
    EXPECT_EQ(127, truncateToInteger(127.99999));
}

TEST(TruncateToInteger, ReachesBothLimits) {
    EXPECT_EQ(2147483647, truncateToInteger(2147483647.0));
    EXPECT_EQ(2147483647, truncateToInteger(2147483647.9999));
    EXPECT_EQ(lowest, truncateToInteger(-2147483648.0));
    EXPECT_EQ(lowest, truncateToInteger(-2147483648.9999));
    EXPECT_EQ(-2147483647, truncateToInteger(-2147483647.5));
}

TEST(TruncateToInteger, WhatDoesNotFitBecomesTheLowestNumber) {
    EXPECT_EQ(lowest, truncateToInteger(2147483648.0));
    EXPECT_EQ(lowest, truncateToInteger(-2147483649.0));
    EXPECT_EQ(lowest, truncateToInteger(1e300));
    EXPECT_EQ(lowest, truncateToInteger(-1e300));
    EXPECT_EQ(lowest, truncateToInteger(infinity));
    EXPECT_EQ(lowest, truncateToInteger(-infinity));
    EXPECT_EQ(lowest, truncateToInteger(std::numeric_limits<double>::quiet_NaN()));
}

TEST(WrappingArithmetic, SumsWrapInTwosComplement) {
    EXPECT_EQ(5, wrappingSum(2, 3));
    EXPECT_EQ(-1, wrappingSum(2, -3));
    EXPECT_EQ(lowest, wrappingSum(2147483647, 1));
    EXPECT_EQ(2147483647, wrappingSum(lowest, -1));
    EXPECT_EQ(0, wrappingSum(lowest, lowest));
    EXPECT_EQ(-2, wrappingSum(2147483647, 2147483647));
}

TEST(WrappingArithmetic, DifferencesWrapInTwosComplement) {
    EXPECT_EQ(-1, wrappingDifference(2, 3));
    EXPECT_EQ(5, wrappingDifference(2, -3));
    EXPECT_EQ(2147483647, wrappingDifference(lowest, 1));
    EXPECT_EQ(lowest, wrappingDifference(2147483647, -1));
    EXPECT_EQ(lowest, wrappingDifference(0, lowest));
    EXPECT_EQ(-1, wrappingDifference(2147483647, lowest));
}

TEST(CutToHundredths, KeepsTwoDecimalsTowardZero) {
    EXPECT_EQ(3.75, cutToHundredths(3.75));
    EXPECT_EQ(60.0, cutToHundredths(60.0));
    EXPECT_EQ(29.99, cutToHundredths(29.9999));
    EXPECT_EQ(29.99, cutToHundredths(29.999));
    EXPECT_EQ(-1.23, cutToHundredths(-1.239));
    EXPECT_EQ(0.0, cutToHundredths(0.009));
}

TEST(CutToHundredths, IsDoneOnTheProductWithAHundred) {
    // 0.29 * 100.0 is a little below 29.
    EXPECT_EQ(0.28, cutToHundredths(0.29));
}

TEST(CutToHundredths, WhatDoesNotFitBecomesTheLowestNumberOfHundredths) {
    EXPECT_EQ(21474836.47, cutToHundredths(21474836.47));
    EXPECT_EQ(-21474836.48, cutToHundredths(21474836.48));
    EXPECT_EQ(-21474836.48, cutToHundredths(infinity));
    EXPECT_EQ(-21474836.48, cutToHundredths(std::numeric_limits<double>::quiet_NaN()));
}

TEST(EqualsIgnoringCase, FoldsAsciiLetters) {
    EXPECT_TRUE(equalsIgnoringCase("MONO8", "mono8"));
    EXPECT_TRUE(equalsIgnoringCase("RgB24", "rgb24"));
    EXPECT_TRUE(equalsIgnoringCase("azAZ", "AZaz"));
    EXPECT_TRUE(equalsIgnoringCase("", ""));
}

TEST(EqualsIgnoringCase, ComparesTheWholeText) {
    EXPECT_FALSE(equalsIgnoringCase("mono", "mono8"));
    EXPECT_FALSE(equalsIgnoringCase("mono8", "mono"));
    EXPECT_FALSE(equalsIgnoringCase("mono8 ", "mono8"));
    EXPECT_FALSE(equalsIgnoringCase("", "m"));
    EXPECT_FALSE(equalsIgnoringCase("mono8", "mono9"));
}

TEST(EqualsIgnoringCase, FoldsNothingButLetters) {
    EXPECT_FALSE(equalsIgnoringCase("@", "`"));
    EXPECT_FALSE(equalsIgnoringCase("[", "{"));
    EXPECT_FALSE(equalsIgnoringCase("\xC3\x84", "\xC3\xA4"));
}

}  // namespace
