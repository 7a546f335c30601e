// SPDX-License-Identifier: MIT
// The scalar rows from which the vector sets make what does not fill their registers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The mosaic of the source rows from `firstRow` to the last, the last one first; how
// many bytes that wrote.
std::size_t mosaicRowsScalar(std::uint8_t* destination, std::span<const std::uint8_t> source,
                             std::int32_t width, std::int32_t firstRow,
                             std::int32_t height) noexcept;
