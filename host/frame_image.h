// SPDX-License-Identifier: MIT
// From the bytes that the adapter copied to a picture with the top row first,
// grey or red-green-blue. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/bayer.h"

namespace camhost {

// What the bytes of a frame mean.
struct FrameLayout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t pixelType = 0;  // HOST_PIXEL_...
    // A raw frame that the adapter made from colours, pair by pair: its rows are
    // an even number of bytes apart.
    bool madeFromColours = false;
};

struct Image {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 1;  // 1 grey, 3 red, green, blue
    std::vector<std::uint8_t> pixels;
};

// "Mono8", "Raw8", "RGB24", or "type N".
std::string_view pixelTypeName(std::uint32_t pixelType);

std::size_t rowBytes(const FrameLayout& layout);

// Bytes of one frame, and bytes that a copy may touch. 0 for sizes that can't be.
std::size_t frameBytes(const FrameLayout& layout);
std::size_t copyBytes(const FrameLayout& layout);

// With a Bayer order a raw frame becomes colours, without one grey. RGB24
// frames come bottom row first in the order blue, green, red.
Image makeImage(const FrameLayout& layout, std::span<const std::uint8_t> frame,
                std::optional<BayerOrder> demosaic);

// How the rows of a pixel type come, in words.
std::string_view rowOrderText(std::uint32_t pixelType);

}  // namespace camhost
