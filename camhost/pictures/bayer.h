// SPDX-License-Identifier: MIT
// Names of Bayer mosaics, which one a raw frame is taken to have, and a quick
// way from a mosaic to colours. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace camhost {

// The two by two pixels at the top left, row by row.
enum class BayerOrder { Rggb, Grbg, Gbrg, Bggr };

std::string_view bayerName(BayerOrder order);  // "RGGB"
std::optional<BayerOrder> parseBayer(std::string_view name);

// The adapter makes raw frames from colours unless the camera's current video
// format is a mosaic under the name Y800.
bool isMadeFromColours(std::string_view videoFormat);

// The order of a raw frame as the adapter delivers it. A Y800 mosaic is taken to
// begin with GRBG once the adapter has moved it; the phase of one that was made
// from colours depends on the height.
BayerOrder assumedBayer(std::string_view videoFormat, std::int32_t height);

// Red, green, blue, three bytes per pixel: every pixel takes its colours from
// the two by two pixels that begin at it (at the far edges: that end at it).
std::vector<std::uint8_t> demosaicFast(std::span<const std::uint8_t> mosaic, std::size_t width,
                                       std::size_t height, BayerOrder order);

}  // namespace camhost
