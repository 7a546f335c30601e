// SPDX-License-Identifier: MIT
#include "acquisition/kernels/frame_copy_kernels.h"

#include <algorithm>

#include "acquisition/kernels/vector_frames.h"

namespace {

// Below this a copy of the C library is as fast, also of one that does not know the
// processor's string move.
constexpr std::size_t leastStringMove = std::size_t{256} << 10U;

void copyBlockWithStringMove(std::uint8_t* destination, std::span<const std::uint8_t> source,
                             std::size_t size) {
    const std::size_t available = std::min(size, source.size());
    if (available >= leastStringMove) {
        moveString(destination, source.data(), available);
    } else {
        scalarFrameCopyKernels().block(destination, source, size);
    }
}

template <const VectorRows& vectors>
void useVectors(FrameCopyKernels& kernels) {
    kernels.shifted = &copyShiftedBy<vectors>;
    kernels.mosaic = &copyMosaicBy<vectors>;
}

}  // namespace

FrameCopyKernels frameCopyKernelsFor(const ProcessorFeatures& features) noexcept {
    FrameCopyKernels kernels = scalarFrameCopyKernels();
    if (features.avx2) {
        useVectors<avx2Rows>(kernels);
    } else if (features.ssse3) {
        useVectors<ssse3Rows>(kernels);
    }
    if (features.fastStringMoves) {
        kernels.block = &copyBlockWithStringMove;
    }
    return kernels;
}
