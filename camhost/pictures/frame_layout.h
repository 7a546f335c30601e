// SPDX-License-Identifier: MIT
// What the bytes that the adapter copies mean, and how many there are. Portable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace camhost {

struct FrameLayout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t pixelType = 0;  // HOST_PIXEL_...
    // A raw frame that the adapter made from colours, pair by pair: its rows are
    // an even number of bytes apart.
    bool madeFromColours = false;

    bool operator==(const FrameLayout&) const = default;
};

// "Mono8", "Raw8", "RGB24", or "unknown".
std::string_view pixelTypeName(std::uint32_t pixelType);

std::size_t rowBytes(const FrameLayout& layout);

// Bytes of one frame, and bytes that a copy may touch. 0 for sizes that can't be.
std::size_t frameBytes(const FrameLayout& layout);
std::size_t copyBytes(const FrameLayout& layout);

// How the rows of a pixel type come, in words.
std::string_view rowOrderText(std::uint32_t pixelType);

}  // namespace camhost
