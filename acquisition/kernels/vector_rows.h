// SPDX-License-Identifier: MIT
// Rows for one instruction set each, in a source with that set's compiler options.
//
// Such a source includes nothing with inline functions that others include as well:
// the linker keeps one copy of those, and a processor without the set would run it.
#pragma once

#include <cstddef>
#include <cstdint>

// The source rows 0 to `rows` - 1, `width` pixels of four bytes apart, as rows of
// `pairs` pairs; the last source row comes first. All pairs lie inside the source.
using MosaicRows = void(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                        std::size_t pairs, std::size_t rows) noexcept;

// `rows` rows of `width` - 1 bytes, `width` apart on both sides.
using ShiftRows = void(std::uint8_t* destination, const std::uint8_t* source, std::size_t width,
                       std::size_t rows) noexcept;

// Rows of fewer bytes than fill a register are not for these functions.
inline constexpr std::size_t leastBytesSsse3 = 16;
MosaicRows mosaicRowsSsse3;
ShiftRows shiftRowsSsse3;

inline constexpr std::size_t leastBytesAvx2 = 32;
MosaicRows mosaicRowsAvx2;
ShiftRows shiftRowsAvx2;
