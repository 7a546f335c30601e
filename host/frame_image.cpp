// SPDX-License-Identifier: MIT
#include "host/frame_image.h"

#include <algorithm>

#include "velmora/host_blocks.h"

namespace camhost {

namespace {

// Largest edge that is taken for a size; keeps products far from overflow.
constexpr std::int32_t largestEdge = 1 << 20;

bool isSane(const FrameLayout& layout) {
    return layout.width > 0 && layout.height > 0 && layout.width <= largestEdge &&
           layout.height <= largestEdge;
}

void flipAndSwap(Image& image, std::span<const std::uint8_t> frame) {
    const std::size_t rowBytes = image.width * 3;
    for (std::size_t y = 0; y < image.height; ++y) {
        const std::uint8_t* source = frame.data() + (image.height - 1 - y) * rowBytes;
        std::uint8_t* row = image.pixels.data() + y * rowBytes;
        for (std::size_t x = 0; x < rowBytes; x += 3) {
            row[x] = source[x + 2];
            row[x + 1] = source[x + 1];
            row[x + 2] = source[x];
        }
    }
}

void copyRows(Image& image, std::span<const std::uint8_t> frame, std::size_t distance) {
    image.pixels.resize(image.width * image.height);
    for (std::size_t y = 0; y < image.height; ++y) {
        const auto row = frame.subspan(y * distance, image.width);
        std::copy(row.begin(), row.end(), &image.pixels[y * image.width]);
    }
}

}  // namespace

std::string_view pixelTypeName(std::uint32_t pixelType) {
    switch (pixelType) {
        case HOST_PIXEL_MONO8:
            return "Mono8";
        case HOST_PIXEL_RAW8:
            return "Raw8";
        case HOST_PIXEL_RGB24:
            return "RGB24";
        default:
            return "unknown";
    }
}

std::size_t rowBytes(const FrameLayout& layout) {
    if (!isSane(layout)) {
        return 0;
    }
    const auto width = static_cast<std::size_t>(layout.width);
    if (layout.pixelType == HOST_PIXEL_RGB24) {
        return width * 3;
    }
    const bool paired = layout.pixelType == HOST_PIXEL_RAW8 && layout.madeFromColours;
    return paired ? width + width % 2 : width;
}

std::size_t frameBytes(const FrameLayout& layout) {
    return isSane(layout) ? rowBytes(layout) * static_cast<std::size_t>(layout.height) : 0;
}

std::size_t copyBytes(const FrameLayout& layout) {
    if (!isSane(layout)) {
        return 0;
    }
    const auto width = static_cast<std::size_t>(layout.width);
    // A library may pad colour rows to four bytes, and raw rows come in pairs.
    const std::size_t widest =
        layout.pixelType == HOST_PIXEL_RGB24 ? (width * 3 + 3) / 4 * 4 : width + width % 2;
    return widest * static_cast<std::size_t>(layout.height);
}

Image makeImage(const FrameLayout& layout, std::span<const std::uint8_t> frame,
                std::optional<BayerOrder> demosaic) {
    Image image;
    const std::size_t bytes = frameBytes(layout);
    if (bytes == 0 || frame.size() < bytes) {
        return image;
    }
    image.width = static_cast<std::size_t>(layout.width);
    image.height = static_cast<std::size_t>(layout.height);
    if (layout.pixelType == HOST_PIXEL_RGB24) {
        image.channels = 3;
        image.pixels.resize(bytes);
        flipAndSwap(image, frame);
        return image;
    }
    copyRows(image, frame, rowBytes(layout));
    if (layout.pixelType == HOST_PIXEL_RAW8 && demosaic) {
        image.channels = 3;
        image.pixels = demosaicFast(image.pixels, image.width, image.height, *demosaic);
    }
    return image;
}

std::string_view rowOrderText(std::uint32_t pixelType) {
    return pixelType == HOST_PIXEL_RGB24 ? "delivered bottom row first, stored top row first"
                                         : "as delivered";
}

}  // namespace camhost
