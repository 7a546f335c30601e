// SPDX-License-Identifier: MIT
// How the scene "counter" writes frame number, row, column and colour plane into
// its pixels. Pure; for the scene, and for tests that read pictures back.
//
// A pixel is one byte per plane. Its two high bits name the plane (0 blue,
// 1 green, 2 red, 3 grey). The six low bits hold, by the column modulo 8:
//   0  row, bits 0 to 5            1  row, bits 6 to 11
//   2  column / 8, bits 0 to 5     3  column / 8, bits 6 to 11
//   4  frame number, bits 0 to 5   5  bits 6 to 11
//   6  bits 12 to 17               7  bits 18 to 23
// Row 0 is the top of the picture, column 0 its left; the first frame after the
// start of live video has number 1. With all properties as the rig states them
// a camera delivers these bytes unchanged.
#pragma once

#include <cstdint>

namespace virtual_cameras {

enum class Plane : std::uint8_t { blue = 0, green = 1, red = 2, grey = 3 };

constexpr std::uint8_t counterValue(std::uint32_t frame, std::uint32_t row, std::uint32_t column,
                                    Plane plane) {
    constexpr std::uint32_t sixBits = 0x3F;
    const std::uint32_t sources[8] = {row,   row >> 6,   column / 8,  column / 8 >> 6,
                                      frame, frame >> 6, frame >> 12, frame >> 18};
    return static_cast<std::uint8_t>(static_cast<std::uint32_t>(plane) << 6 |
                                     (sources[column % 8] & sixBits));
}

// The frame number that the pixels at columns 4 to 7 of a row hold.
constexpr std::uint32_t counterFrame(const std::uint8_t (&columns4To7)[4]) {
    std::uint32_t frame = 0;
    for (std::uint32_t i = 0; i < 4; ++i) {
        frame |= (columns4To7[i] & 0x3FU) << (6 * i);
    }
    return frame;
}

}  // namespace virtual_cameras
