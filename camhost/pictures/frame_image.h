// SPDX-License-Identifier: MIT
// From the bytes that the adapter copied to a picture with the top row first,
// grey or red-green-blue. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_layout.h"

namespace camhost {

struct Image {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 1;  // 1 grey, 3 red, green, blue
    std::vector<std::uint8_t> pixels;
};

// With a Bayer order a raw frame becomes colours, without one grey. RGB24
// frames come bottom row first in the order blue, green, red.
Image makeImage(const FrameLayout& layout, std::span<const std::uint8_t> frame,
                std::optional<BayerOrder> demosaic);

}  // namespace camhost
