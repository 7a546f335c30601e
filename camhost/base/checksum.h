// SPDX-License-Identifier: MIT
// The checksum that PNG and zip files share. Portable.
#pragma once

#include <cstdint>
#include <span>

namespace camhost {

std::uint32_t crc32(std::span<const std::uint8_t> bytes);

}  // namespace camhost
