// SPDX-License-Identifier: MIT
#include "camhost/pictures/bayer.h"

#include <array>

#include "camhost/base/texts.h"

namespace camhost {

namespace {

constexpr std::array<std::string_view, 4> names{"RGGB", "GRBG", "GBRG", "BGGR"};

// Index of the colour (0 red, 1 green, 2 blue) at even/odd row and column.
std::size_t colourAt(BayerOrder order, std::size_t row, std::size_t column) {
    const char letter = names[static_cast<std::size_t>(order)][(row % 2) * 2 + column % 2];
    return letter == 'R' ? 0 : letter == 'G' ? 1 : 2;
}

}  // namespace

std::string_view bayerName(BayerOrder order) {
    return names[static_cast<std::size_t>(order)];
}

std::optional<BayerOrder> parseBayer(std::string_view name) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (sameIgnoringCase(name, names[i])) {
            return static_cast<BayerOrder>(i);
        }
    }
    return std::nullopt;
}

bool isMadeFromColours(std::string_view videoFormat) {
    return !videoFormat.starts_with("Y800");
}

BayerOrder assumedBayer(std::string_view videoFormat, std::int32_t height) {
    return isMadeFromColours(videoFormat) && height % 2 != 0 ? BayerOrder::Bggr : BayerOrder::Grbg;
}

std::vector<std::uint8_t> demosaicFast(std::span<const std::uint8_t> mosaic, std::size_t width,
                                       std::size_t height, BayerOrder order) {
    std::vector<std::uint8_t> colours(width * height * 3);
    if (width < 2 || height < 2 || mosaic.size() < width * height) {
        return colours;
    }
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t top = y + 1 < height ? y : y - 1;
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t left = x + 1 < width ? x : x - 1;
            std::array<unsigned, 3> sums{};
            for (std::size_t k = 0; k < 4; ++k) {
                const std::size_t row = top + k / 2;
                const std::size_t column = left + k % 2;
                sums[colourAt(order, row, column)] += mosaic[row * width + column];
            }
            std::uint8_t* pixel = &colours[(y * width + x) * 3];
            pixel[0] = static_cast<std::uint8_t>(sums[0]);
            pixel[1] = static_cast<std::uint8_t>(sums[1] / 2);
            pixel[2] = static_cast<std::uint8_t>(sums[2]);
        }
    }
    return colours;
}

}  // namespace camhost
