// SPDX-License-Identifier: MIT
#include "acquisition/frame_copy.h"

#include <algorithm>

const FrameCopyKernels& frameCopyKernels() noexcept {
    static const FrameCopyKernels chosen = frameCopyKernelsFor(processorFeatures());
    return chosen;
}

std::size_t frameBytes(std::int32_t width, std::int32_t height) noexcept {
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(width) *
                                                   static_cast<std::uint32_t>(height));
    return static_cast<std::size_t>(std::max(product, 0));
}
