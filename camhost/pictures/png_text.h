// SPDX-License-Identifier: MIT
// Texts inside PNG files: put in behind the header chunk, and read back.
// Portable.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace camhost {

using PngTexts = std::vector<std::pair<std::string, std::string>>;

// One tEXt chunk each. Left alone when the bytes are no PNG file.
void insertPngTexts(std::vector<std::uint8_t>& png, const PngTexts& texts);

// Those whose checksum is right, in file order.
PngTexts readPngTexts(std::span<const std::uint8_t> png);

}  // namespace camhost
