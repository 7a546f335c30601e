// SPDX-License-Identifier: MIT
// Frames cut into the rows that vectors can take and the rest, which the scalar set
// does. Compiled for every processor, unlike the rows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "acquisition/kernels/frame_copy_kernels.h"
#include "acquisition/kernels/scalar_rows.h"
#include "acquisition/kernels/vector_rows.h"

struct VectorRows {
    std::size_t leastBytes;
    MosaicRows* mosaic;
    ShiftRows* shift;
};

inline constexpr VectorRows ssse3Rows = {leastBytesSsse3, &mosaicRowsSsse3, &shiftRowsSsse3};
inline constexpr VectorRows avx2Rows = {leastBytesAvx2, &mosaicRowsAvx2, &shiftRowsAvx2};

// The rows that lie inside the source go to the vectors, a cut one and those that
// are too short to the scalar set.
template <const VectorRows& vectors>
void copyShiftedBy(std::uint8_t* destination, std::span<const std::uint8_t> source,
                   std::int32_t width, std::int32_t height) {
    const auto rowBytes = static_cast<std::size_t>(std::max(width, 0));
    if (rowBytes > vectors.leastBytes && height > 1 && source.size() >= 2 * rowBytes) {
        const std::size_t rows =
            std::min(static_cast<std::size_t>(height), source.size() / rowBytes) - 1;
        vectors.shift(destination, source.data() + rowBytes + 1, rowBytes, rows);
        destination += rows * rowBytes;
        source = source.subspan(rows * rowBytes);
        height -= static_cast<std::int32_t>(rows);
    }
    scalarFrameCopyKernels().shifted(destination, source, width, height);
}

// The last rows stand first in the destination: those that the source cuts, and at an
// odd width the one that no other follows.
template <const VectorRows& vectors>
void copyMosaicBy(std::uint8_t* destination, std::span<const std::uint8_t> source,
                  std::int32_t width, std::int32_t height) {
    const std::size_t columns = static_cast<std::size_t>(std::max(width, 0));
    const std::size_t pairs = (columns + 1) / 2;
    const std::size_t rowBytes = 4 * columns;
    const std::size_t frame = rowBytes * static_cast<std::size_t>(std::max(height, 0));
    const std::size_t available = std::min(source.size(), frame);
    std::size_t rows = 0;
    if (2 * pairs >= vectors.leastBytes && available >= 8 * pairs) {
        rows = (available - 8 * pairs) / rowBytes + 1;
    }
    const std::size_t written =
        mosaicRowsScalar(destination, source, width, static_cast<std::int32_t>(rows), height);
    if (rows != 0) {
        vectors.mosaic(destination + written, source.data(), columns, pairs, rows);
    }
}
