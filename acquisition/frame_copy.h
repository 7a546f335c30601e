// SPDX-License-Identifier: MIT
// Pure: the ways in which a frame reaches the host's memory.
//
// Bytes, rows and pixels; no locks, no allocation. Nothing is ever read past the
// end of the source. What lies outside it is left out, so that a source smaller
// than width x height fills no more of the destination than its own size asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

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

// The set that this processor runs best.
const FrameCopyKernels& frameCopyKernels() noexcept;

// Bytes of a width x height frame of one byte per pixel, the product taken as a
// 32-bit signed number; nothing for a negative one.
std::size_t frameBytes(std::int32_t width, std::int32_t height) noexcept;
