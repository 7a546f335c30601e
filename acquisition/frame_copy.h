// SPDX-License-Identifier: MIT
// Pure: the ways in which a frame reaches the host's memory.
//
// Bytes, rows and pixels; no locks, no allocation. Nothing is ever read past the
// end of the source. What lies outside it is left out, so that a source smaller
// than width x height fills no more of the destination than its own size asks for.
#pragma once

#include <cstddef>
#include <cstdint>

#include "acquisition/kernels/frame_copy_kernels.h"

// The set that this processor runs best, chosen at the first call.
const FrameCopyKernels& frameCopyKernels() noexcept;

// Bytes of a width x height frame of one byte per pixel, the product taken as a
// 32-bit signed number; nothing for a negative one.
std::size_t frameBytes(std::int32_t width, std::int32_t height) noexcept;
