// SPDX-License-Identifier: MIT
// PNG bytes of a picture. The only file that knows the image library is
// png_encode.cpp. Portable.
#pragma once

#include <cstdint>
#include <vector>

#include "camhost/pictures/frame_image.h"

namespace camhost {

// Empty when the picture is empty. Throws a Failure when it is too large.
std::vector<std::uint8_t> encodePng(const Image& image);

}  // namespace camhost
