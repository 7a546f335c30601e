// SPDX-License-Identifier: MIT
#include "fuzz/any_library/texts.h"

#include <array>
#include <cstddef>

namespace any_library {

namespace {

// Made once and never destroyed.
struct Texts {
    std::string just = std::string(255, 'j');
    std::string over = std::string(256, 'o');
    std::string veryLong = std::string(1000, 'l');
    std::wstring wideJust = std::wstring(255, L'j');
    std::wstring wideOver = std::wstring(256, L'o');
    std::wstring wideLong = std::wstring(1000, L'\x20AC');
    std::wstring broken = {L'a', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000),
                           static_cast<wchar_t>(-1), L'b'};
    std::wstring withZero = std::wstring(L"a\0b", 3);
};

const Texts& texts() {
    static const Texts& made = *new Texts;
    return made;
}

constexpr std::size_t formatCount = 16;

}  // namespace

const char* narrowText(std::uint8_t choice) noexcept {
    static const std::array<const char*, formatCount> all = {"Y800 (8x4)",
                                                             "RGB24 (8x4)",
                                                             "BY8 (8x4)",
                                                             "Camera",
                                                             "",
                                                             nullptr,
                                                             texts().just.c_str(),
                                                             texts().over.c_str(),
                                                             texts().veryLong.c_str(),
                                                             "\xFF\xFE\x80",
                                                             "\xE2\x82",
                                                             "Y80",
                                                             "QRM 52XAV07",
                                                             " ",
                                                             "%s%n%d",
                                                             "A,B"};
    return all[choice % formatCount];
}

std::wstring_view wideText(std::uint8_t choice) noexcept {
    static const std::array<std::wstring_view, formatCount> all = {L"Y800 (8x4)",
                                                                   L"RGB24 (8x4)",
                                                                   L"BY8 (8x4)",
                                                                   L"Camera",
                                                                   L"",
                                                                   L"",
                                                                   texts().wideJust,
                                                                   texts().wideOver,
                                                                   texts().wideLong,
                                                                   texts().broken,
                                                                   texts().withZero,
                                                                   L"Y80",
                                                                   L"QRM 52XAV07",
                                                                   L" ",
                                                                   L"%s%n%d",
                                                                   L"A,B"};
    return all[choice % formatCount];
}

std::uint8_t strangeText(std::uint8_t detail) noexcept {
    return static_cast<std::uint8_t>(detail + 4);
}

}  // namespace any_library
