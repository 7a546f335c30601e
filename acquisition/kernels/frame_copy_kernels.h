// SPDX-License-Identifier: MIT
// The sets of copy kernels. What the rest of the product uses is
// acquisition/frame_copy.h; tests, fuzzers and benchmarks force a set from here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "acquisition/kernels/processor.h"

// One set of kernels that do the same work; the scalar set is the meaning.
struct FrameCopyKernels {
    // `size` bytes as they are.
    void (*block)(std::uint8_t* destination, std::span<const std::uint8_t> source,
                  std::size_t size);

    // Raw 8 bit, moved by one row and one column: source row k from column 1 on
    // becomes destination row k - 1. The last column and the last row of the
    // destination are not written.
    void (*shifted)(std::uint8_t* destination, std::span<const std::uint8_t> source,
                    std::int32_t width, std::int32_t height);

    // Raw 8 bit rebuilt from 32-bit pixels (blue, green, red, unused; rows not
    // padded, bottom row first): the last source row comes first. Odd source rows
    // give green of x and red of x + 1, even ones blue of x and green of x + 1.
    // At an odd width every row is one byte longer than the width, and that byte
    // comes from the next source row in memory, or is 0 where the source has ended.
    // The destination is filled without gaps, also where source rows are missing.
    void (*mosaic)(std::uint8_t* destination, std::span<const std::uint8_t> source,
                   std::int32_t width, std::int32_t height);
};

// Plain C++; always there.
const FrameCopyKernels& scalarFrameCopyKernels() noexcept;

// The best set for a processor with these features. It runs on no other.
FrameCopyKernels frameCopyKernelsFor(const ProcessorFeatures& features) noexcept;
