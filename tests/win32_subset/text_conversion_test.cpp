// SPDX-License-Identifier: MIT
// Text conversion of the Win32 subset: sizes, terminators, bad sequences.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/win32/win32_log.h"

namespace {

std::wstring wide(const std::string& text) {
    wchar_t buffer[64] = {};
    const int size =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), buffer, 64);
    return {buffer, static_cast<std::size_t>(size)};
}

std::string narrow(const std::wstring& text) {
    char buffer[64] = {};
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         buffer, 64, nullptr, nullptr);
    return {buffer, static_cast<std::size_t>(size)};
}

}  // namespace

TEST(TextConversion, RoundTripsEveryLength) {
    EXPECT_EQ(L"a\u00e4\u20ac\U0001F4F7", wide("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7"));
    EXPECT_EQ("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7", narrow(L"a\u00e4\u20ac\U0001F4F7"));
}

TEST(TextConversion, LengthMinusOneCountsTheTerminator) {
    EXPECT_EQ(3, MultiByteToWideChar(CP_UTF8, 0, "ab", -1, nullptr, 0));
    EXPECT_EQ(4, WideCharToMultiByte(CP_UTF8, 0, L"a\u00e4", -1, nullptr, 0, nullptr, nullptr));
}

TEST(TextConversion, TooSmallABufferFails) {
    wchar_t wideBuffer[1];
    EXPECT_EQ(0, MultiByteToWideChar(CP_UTF8, 0, "ab", 2, wideBuffer, 1));
    EXPECT_EQ(122u, GetLastError());
    char narrowBuffer[1];
    EXPECT_EQ(0, WideCharToMultiByte(CP_UTF8, 0, L"\u00e4", 1, narrowBuffer, 1, nullptr, nullptr));
    EXPECT_EQ(122u, GetLastError());
}

TEST(TextConversion, BadSequencesBecomeReplacementCharacters) {
    EXPECT_EQ(L"a\uFFFDb", wide("a\xE4"
                                "b"));
    EXPECT_EQ(L"\uFFFD\uFFFD", wide("\xC0\x80"));
    EXPECT_EQ(L"\uFFFDx", wide("\xE2\x82x"));
    EXPECT_EQ(L"\uFFFD", wide("\xF0\x9F\x93"));
    EXPECT_EQ(L"\uFFFD\uFFFD\uFFFD", wide("\xED\xA0\x80"));
    EXPECT_EQ("\xEF\xBF\xBD", narrow(std::wstring(1, static_cast<wchar_t>(0xD800))));
}

TEST(TextConversion, StrictFlagsRefuseBadSequences) {
    EXPECT_EQ(0, MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\xE4", 1, nullptr, 0));
    EXPECT_EQ(1113u, GetLastError());
}

TEST(TextConversion, OtherFlagsAreRefused) {
    EXPECT_EQ(0, MultiByteToWideChar(CP_UTF8, 1, "a", 1, nullptr, 0));
    EXPECT_EQ(1004u, GetLastError());
    EXPECT_EQ(0, WideCharToMultiByte(CP_UTF8, 1, L"a", 1, nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(1004u, GetLastError());
}

TEST(TextConversion, EmptyAndForeignCodePagesAreRefused) {
    EXPECT_EQ(0, MultiByteToWideChar(CP_UTF8, 0, "a", 0, nullptr, 0));
    EXPECT_EQ(87u, GetLastError());
    EXPECT_EQ(0, MultiByteToWideChar(1252, 0, "a", 1, nullptr, 0));
    EXPECT_EQ(87u, GetLastError());
}
