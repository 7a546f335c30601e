// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string>

namespace virtual_cameras {

// A number's shortest text. No stream: those follow the locale of the process.
template <class Number>
std::string numberText(Number number) {
    constexpr std::size_t longest = 400;
    std::array<char, longest> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return std::string(text.data(), end);
}

}  // namespace virtual_cameras
