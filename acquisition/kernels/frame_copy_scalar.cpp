// SPDX-License-Identifier: MIT
// The scalar set: what every other set must do, byte for byte.
#include <algorithm>
#include <cstring>

#include "acquisition/kernels/frame_copy_kernels.h"
#include "acquisition/kernels/scalar_rows.h"

namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr std::size_t blue = 0;
constexpr std::size_t green = 1;
constexpr std::size_t red = 2;

void copyBlock(std::uint8_t* destination, std::span<const std::uint8_t> source, std::size_t size) {
    const std::size_t available = std::min(size, source.size());
    if (available != 0) {
        std::memcpy(destination, source.data(), available);
    }
}

void copyShifted(std::uint8_t* destination, std::span<const std::uint8_t> source,
                 std::int32_t width, std::int32_t height) {
    if (width < 2) {
        return;
    }
    const auto rowBytes = static_cast<std::size_t>(width);
    for (std::int32_t row = 1; row < height; ++row) {
        const std::size_t start = static_cast<std::size_t>(row) * rowBytes + 1;
        if (start >= source.size()) {
            return;
        }
        copyBlock(destination, source.subspan(start), rowBytes - 1);
        destination += rowBytes;
    }
}

// One row of pairs, and how many bytes it wrote. `first` and `second` are the
// channels of the even and the odd pixel of a pair. Pairs that lie inside the
// source as a whole come first, so that their loop asks no questions; at most one
// pair is cut by its end.
std::size_t mosaicRow(std::uint8_t* destination, std::span<const std::uint8_t> source,
                      std::size_t pairs, std::size_t first, std::size_t second) {
    constexpr std::size_t bytesPerPair = 2 * bytesPerPixel;
    const std::size_t lastByte = bytesPerPixel + second;
    const std::size_t inside =
        source.size() > lastByte ? (source.size() - lastByte - 1) / bytesPerPair + 1 : 0;
    const std::size_t whole = std::min(pairs, inside);
    const std::uint8_t* pixel = source.data();
    for (std::size_t pair = 0; pair < whole; ++pair) {
        destination[2 * pair] = pixel[pair * bytesPerPair + first];
        destination[2 * pair + 1] = pixel[pair * bytesPerPair + lastByte];
    }
    if (whole == pairs || whole * bytesPerPair + first >= source.size()) {
        return 2 * whole;
    }
    destination[2 * whole] = pixel[whole * bytesPerPair + first];
    destination[2 * whole + 1] = 0;
    return 2 * (whole + 1);
}

void copyMosaic(std::uint8_t* destination, std::span<const std::uint8_t> source, std::int32_t width,
                std::int32_t height) {
    mosaicRowsScalar(destination, source, width, 0, height);
}

constexpr FrameCopyKernels scalarKernels = {&copyBlock, &copyShifted, &copyMosaic};

}  // namespace

std::size_t mosaicRowsScalar(std::uint8_t* destination, std::span<const std::uint8_t> source,
                             std::int32_t width, std::int32_t firstRow,
                             std::int32_t height) noexcept {
    if (width < 1 || height < 1) {
        return 0;
    }
    const std::size_t rowBytes = static_cast<std::size_t>(width) * bytesPerPixel;
    const std::size_t pairs = (static_cast<std::size_t>(width) + 1) / 2;
    // A larger buffer has no row after the last one either.
    source = source.first(std::min(source.size(), rowBytes * static_cast<std::size_t>(height)));
    if (source.empty()) {
        return 0;
    }
    const auto lastRow = static_cast<std::int32_t>((source.size() - 1) / rowBytes);
    std::size_t written = 0;
    for (std::int32_t row = lastRow; row >= firstRow; --row) {
        const std::size_t start = static_cast<std::size_t>(row) * rowBytes;
        const bool odd = (row & 1) != 0;
        written += mosaicRow(destination + written, source.subspan(start), pairs,
                             odd ? green : blue, odd ? red : green);
    }
    return written;
}

const FrameCopyKernels& scalarFrameCopyKernels() noexcept {
    return scalarKernels;
}
