// SPDX-License-Identifier: MIT
#include "camhost/pictures/png_encode.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

#include <string>

#include "camhost/base/failure.h"

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
    // The library counts bytes in an int, twice as many as it packs.
    constexpr std::size_t most = std::size_t{1} << 29U;
    const std::size_t row = image.width * image.channels + 1;
    const int width = static_cast<int>(image.width);
    const int channels = static_cast<int>(image.channels);
    if (image.height > most / row ||
        stbi_write_png_to_func(append, &png, width, static_cast<int>(image.height), channels,
                               image.pixels.data(), width * channels) == 0) {
        throw Failure{.code = "file",
                      .message = "a picture of " + std::to_string(image.width) + "x" +
                                 std::to_string(image.height) + " is too large for a PNG file",
                      .hint = "pnm and raw files take it"};
    }
    return png;
}

}  // namespace camhost
