// SPDX-License-Identifier: MIT
// Writes one frame to a file in the chosen format, and whole files for other
// commands. File names are UTF-8. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/frame_image.h"
#include "host/png_text.h"

namespace camhost {

enum class PictureFormat { Png, Raw, Pnm, None };

std::optional<PictureFormat> parsePictureFormat(std::string_view name);
// By the end of the name (.png, .raw, .pnm, .pgm, .ppm).
std::optional<PictureFormat> pictureFormatOfName(std::string_view fileName);

// The bytes of the file: Raw is the frame itself, Pnm is PGM or PPM by colour.
std::vector<std::uint8_t> encodePicture(PictureFormat format, const FrameLayout& layout,
                                        std::span<const std::uint8_t> frame,
                                        std::optional<BayerOrder> demosaic, const PngTexts& texts);

// Throw a Failure that names the file.
void writeFile(const std::string& name, std::span<const std::uint8_t> bytes);
std::string readTextFile(const std::string& name);

}  // namespace camhost
