// SPDX-License-Identifier: MIT
#include "camhost/pictures/picture_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "camhost/base/texts.h"
#include "camhost/pictures/png_encode.h"

namespace camhost {

namespace {

constexpr std::array<std::pair<std::string_view, PictureFormat>, 4> formatNames{{
    {"png", PictureFormat::Png},
    {"raw", PictureFormat::Raw},
    {"pnm", PictureFormat::Pnm},
    {"none", PictureFormat::None},
}};

constexpr std::array<std::pair<std::string_view, PictureFormat>, 5> fileEnds{{
    {".png", PictureFormat::Png},
    {".raw", PictureFormat::Raw},
    {".pnm", PictureFormat::Pnm},
    {".pgm", PictureFormat::Pnm},
    {".ppm", PictureFormat::Pnm},
}};

std::vector<std::uint8_t> encodePnm(const Image& image) {
    const std::string head = std::string(image.channels == 3 ? "P6\n" : "P5\n") +
                             std::to_string(image.width) + " " + std::to_string(image.height) +
                             "\n255\n";
    std::vector<std::uint8_t> bytes(head.begin(), head.end());
    bytes.insert(bytes.end(), image.pixels.begin(), image.pixels.end());
    return bytes;
}

}  // namespace

std::optional<PictureFormat> parsePictureFormat(std::string_view name) {
    for (const auto& [word, format] : formatNames) {
        if (sameIgnoringCase(name, word)) {
            return format;
        }
    }
    return std::nullopt;
}

std::optional<PictureFormat> pictureFormatOfName(std::string_view fileName) {
    const std::string name = lowered(fileName);
    for (const auto& [end, format] : fileEnds) {
        if (name.ends_with(end)) {
            return format;
        }
    }
    return std::nullopt;
}

std::vector<std::uint8_t> encodePicture(PictureFormat format, const FrameLayout& layout,
                                        std::span<const std::uint8_t> frame,
                                        std::optional<BayerOrder> demosaic, const PngTexts& texts) {
    if (format == PictureFormat::Raw) {
        const auto bytes = frame.first(std::min(frame.size(), frameBytes(layout)));
        return {bytes.begin(), bytes.end()};
    }
    const Image image = makeImage(layout, frame, demosaic);
    if (format == PictureFormat::Pnm) {
        return encodePnm(image);
    }
    std::vector<std::uint8_t> png = encodePng(image);
    insertPngTexts(png, texts);
    return png;
}

}  // namespace camhost
