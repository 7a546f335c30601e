// SPDX-License-Identifier: MIT
// UTF-8 to wide text and back.
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "platform/text.h"

namespace {

using namespace std::string_literals;

TEST(TextConversion, EmptyTextStaysEmptyBothWays) {
    EXPECT_EQ("", toNarrow(L""));
    EXPECT_EQ(L"", toWide(""));
    EXPECT_EQ("", toNarrow(std::wstring_view()));
    EXPECT_EQ(L"", toWide(std::string_view()));
}

TEST(TextConversion, AsciiIsTheSameBothWays) {
    EXPECT_EQ("ORV_CAPLB11*.dll", toNarrow(L"ORV_CAPLB11*.dll"));
    EXPECT_EQ(L"C:\\adapter\\", toWide("C:\\adapter\\"));
}

TEST(TextConversion, NarrowTextIsUtf8) {
    EXPECT_EQ("\xC3\xA4", toNarrow(L"\u00E4"));
    EXPECT_EQ("\xE2\x82\xAC 5", toNarrow(L"\u20AC 5"));
    EXPECT_EQ(L"\u00E4", toWide("\xC3\xA4"));
    EXPECT_EQ(L"\u20AC 5", toWide("\xE2\x82\xAC 5"));
}

TEST(TextConversion, FirstAndLastCharacterOfEverySizePass) {
    EXPECT_EQ("\x7F", toNarrow(L"\x7F"));
    EXPECT_EQ("\xC2\x80", toNarrow(L"\u0080"));
    EXPECT_EQ("\xDF\xBF", toNarrow(L"\u07FF"));
    EXPECT_EQ("\xE0\xA0\x80", toNarrow(L"\u0800"));
    EXPECT_EQ("\xEF\xBF\xBD", toNarrow(L"\uFFFD"));
    EXPECT_EQ(L"\u0080", toWide("\xC2\x80"));
    EXPECT_EQ(L"\u07FF", toWide("\xDF\xBF"));
    EXPECT_EQ(L"\u0800", toWide("\xE0\xA0\x80"));
}

TEST(TextConversion, CharactersBeyondTheBasicPlaneTakeFourBytes) {
    EXPECT_EQ("a\xF0\x9F\x93\xB7z", toNarrow(L"a\U0001F4F7z"));
    EXPECT_EQ(L"a\U0001F4F7z", toWide("a\xF0\x9F\x93\xB7z"));
    EXPECT_EQ("\xF4\x8F\xBF\xBF", toNarrow(L"\U0010FFFF"));
    EXPECT_EQ(L"\U0010FFFF", toWide("\xF4\x8F\xBF\xBF"));
}

TEST(TextConversion, TerminatorsInsideTheTextAreKept) {
    EXPECT_EQ("a\0b"s, toNarrow(L"a\0b"s));
    EXPECT_EQ(L"a\0b"s, toWide("a\0b"s));
}

TEST(TextConversion, OnlyTheGivenPartOfALargerTextIsRead) {
    EXPECT_EQ("Y800", toNarrow(std::wstring_view(L"Y800 (640x480)", 4)));
    EXPECT_EQ(L"Y800", toWide(std::string_view("Y800 (640x480)", 4)));
}

TEST(TextConversion, BytesThatAreNotUtf8BecomeTheReplacementCharacter) {
    EXPECT_EQ(L"a\uFFFDz", toWide("a\xFFz"));
    EXPECT_EQ(L"a\uFFFDz", toWide("a\x80z"));
    EXPECT_EQ(L"a\uFFFD", toWide("a\xC3"));
    EXPECT_EQ(L"\uFFFDz", toWide("\xC3z"));
}

TEST(TextConversion, LoneSurrogatesBecomeTheReplacementCharacter) {
    const wchar_t high[] = {L'a', static_cast<wchar_t>(0xD83D), L'z'};
    const wchar_t low[] = {L'a', static_cast<wchar_t>(0xDCF7), L'z'};
    EXPECT_EQ("a\xEF\xBF\xBDz", toNarrow(std::wstring_view(high, 3)));
    EXPECT_EQ("a\xEF\xBF\xBDz", toNarrow(std::wstring_view(low, 3)));
}

TEST(TextConversion, TheLocaleOfTheHostDoesNotMatter) {
    // Those that the machine has.
    for (const char* name : {"C.UTF-8", "de_DE.ISO-8859-1", "German", "ja_JP.SJIS", "Japanese"}) {
        std::setlocale(LC_ALL, name);
        EXPECT_EQ("\xC3\xA4", toNarrow(L"\u00E4")) << name;
        EXPECT_EQ(L"\u00E4", toWide("\xC3\xA4")) << name;
    }
    std::setlocale(LC_ALL, "C");
}

TEST(TextOrEmpty, NullIsTheEmptyText) {
    EXPECT_EQ("", textOrEmpty(nullptr));
    EXPECT_EQ("", textOrEmpty(""));
    EXPECT_EQ("framerate", textOrEmpty("framerate"));
}

TEST(HexadecimalText, ZeroIsOneDigit) {
    EXPECT_EQ("0", hexadecimalText(0));
}

TEST(HexadecimalText, DigitsAreUpperCaseWithoutLeadingZeros) {
    EXPECT_EQ("9", hexadecimalText(9));
    EXPECT_EQ("A", hexadecimalText(10));
    EXPECT_EQ("F", hexadecimalText(15));
    EXPECT_EQ("10", hexadecimalText(16));
    EXPECT_EQ("7B", hexadecimalText(123));
    EXPECT_EQ("1A2B3C4D5E6F", hexadecimalText(0x1A2B3C4D5E6F));
    EXPECT_EQ("100000000", hexadecimalText(4294967296));
    EXPECT_EQ("7FFFFFFFFFFFFFFF", hexadecimalText(9223372036854775807));
}

TEST(HexadecimalText, NegativeNumbersAreWrittenInTwosComplement) {
    EXPECT_EQ("FFFFFFFFFFFFFFFF", hexadecimalText(-1));
    EXPECT_EQ("FFFFFFFFFFFFFFF0", hexadecimalText(-16));
    EXPECT_EQ("8000000000000000", hexadecimalText(-9223372036854775807 - 1));
}

}  // namespace
