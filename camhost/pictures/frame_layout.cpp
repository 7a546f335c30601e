// SPDX-License-Identifier: MIT
#include "camhost/pictures/frame_layout.h"

#include "velmora/host_blocks.h"

namespace camhost {

namespace {

// Largest edge that is taken for a size; keeps products far from overflow.
constexpr std::int32_t largestEdge = 1 << 20;

bool isSane(const FrameLayout& layout) {
    return layout.width > 0 && layout.height > 0 && layout.width <= largestEdge &&
           layout.height <= largestEdge;
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

std::string_view rowOrderText(std::uint32_t pixelType) {
    return pixelType == HOST_PIXEL_RGB24 ? "delivered bottom row first, stored top row first"
                                         : "as delivered";
}

}  // namespace camhost
