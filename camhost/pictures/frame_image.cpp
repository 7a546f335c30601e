// SPDX-License-Identifier: MIT
#include "camhost/pictures/frame_image.h"

#include <algorithm>

#include "velmora/host_blocks.h"

namespace camhost {

namespace {

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

}  // namespace camhost
