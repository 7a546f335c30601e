// SPDX-License-Identifier: MIT
// The formats of picture files, and the bytes of one frame in them. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "camhost/pictures/frame_image.h"
#include "camhost/pictures/png_text.h"

namespace camhost {

enum class PictureFormat { Png, Raw, Pnm, None };

std::optional<PictureFormat> parsePictureFormat(std::string_view name);
// By the end of the name (.png, .raw, .pnm, .pgm, .ppm).
std::optional<PictureFormat> pictureFormatOfName(std::string_view fileName);

// The bytes of the file: Raw is the frame itself, Pnm is PGM or PPM by colour.
std::vector<std::uint8_t> encodePicture(PictureFormat format, const FrameLayout& layout,
                                        std::span<const std::uint8_t> frame,
                                        std::optional<BayerOrder> demosaic, const PngTexts& texts);

}  // namespace camhost
