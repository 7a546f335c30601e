// SPDX-License-Identifier: MIT
#include "camhost/pictures/png_encode.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace camhost {

namespace {

void append(void* context, void* data, int size) {
    auto* bytes = static_cast<std::vector<std::uint8_t>*>(context);
    const auto* begin = static_cast<const std::uint8_t*>(data);
    bytes->insert(bytes->end(), begin, begin + size);
}

}  // namespace

std::vector<std::uint8_t> encodePng(const Image& image) {
    std::vector<std::uint8_t> png;
    if (image.pixels.empty()) {
        return png;
    }
    const int width = static_cast<int>(image.width);
    const int channels = static_cast<int>(image.channels);
    stbi_write_png_to_func(append, &png, width, static_cast<int>(image.height), channels,
                           image.pixels.data(), width * channels);
    return png;
}

}  // namespace camhost
