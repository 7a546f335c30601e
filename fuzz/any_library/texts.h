// SPDX-License-Identifier: MIT
// The texts that the library may answer with: of every length and encoding.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace any_library {

// Null for some.
const char* narrowText(std::uint8_t choice) noexcept;
std::wstring_view wideText(std::uint8_t choice) noexcept;

// First of a format, name or kind, such as "Y800 (8x4)".
inline constexpr std::uint8_t greyFormat = 0;
inline constexpr std::uint8_t colorFormat = 1;
inline constexpr std::uint8_t rawFormat = 2;
inline constexpr std::uint8_t longText = 8;

// The texts of the manners that give another one.
std::uint8_t strangeText(std::uint8_t detail) noexcept;

}  // namespace any_library
