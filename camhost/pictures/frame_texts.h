// SPDX-License-Identifier: MIT
// What is told of a frame besides its pixels: the mosaic that it is taken to have, its
// kind in words, and the texts of its PNG file. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/pictures/png_text.h"

namespace camhost {

// What the camera tells of its formats.
struct VideoFormats {
    std::string current;
    bool areAllGrey = false;  // so there is no mosaic in its raw frames
};
// Without choices the camera has one format alone, and tells no more of it.
VideoFormats videoFormatsOf(std::string current,
                            const std::optional<std::vector<std::string>>& choices);

// The mosaic of a raw frame: the one that was chosen, or that of its format.
std::optional<BayerOrder> bayerOf(const FrameLayout& layout, const VideoFormats& formats,
                                  std::optional<BayerOrder> chosen);

// "Mono8", or "Raw8 BGGR as delivered".
std::string pixelText(const FrameLayout& layout, std::optional<BayerOrder> order, bool wasChosen);

PngTexts frameTexts(const FrameLayout& layout, std::optional<BayerOrder> order, bool demosaic,
                    const std::string& serial, std::uint64_t number);

}  // namespace camhost
