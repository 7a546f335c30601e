// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/frame_types.h"

#include <cstdint>

#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

namespace {

constexpr GUID characterCode(char a, char b, char c, char d) {
    using Word = decltype(GUID::Data1);
    return {static_cast<Word>(a) | static_cast<Word>(b) << 8 | static_cast<Word>(c) << 16 |
                static_cast<Word>(d) << 24,
            0x0000,
            0x0010,
            {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
}

constexpr GUID rgbSubtype(std::uint32_t first) {
    return {first, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
}

constexpr GUID subtypeY800 = characterCode('Y', '8', '0', '0');
constexpr GUID subtypeBY8 = characterCode('B', 'Y', '8', ' ');
constexpr GUID subtypeRGB8 = rgbSubtype(0xE436EB7A);
constexpr GUID subtypeRGB24 = rgbSubtype(0xE436EB7D);
constexpr GUID subtypeRGB32 = rgbSubtype(0xE436EB7E);

}  // namespace

std::optional<PixelForm> pixelFormFor(const GUID& subtype, std::string_view formatText,
                                      bool colour) {
    const bool greyFormat = formatText.starts_with("Y800");
    const PixelForm sensor = colour ? PixelForm::mosaic : PixelForm::grey;
    if (subtype == noIdentifier) {
        if (greyFormat || formatText.starts_with("BY8")) {
            return sensor;
        }
        return formatText.starts_with("RGB32") ? PixelForm::bgrx : PixelForm::bgr;
    }
    if (subtype == subtypeY800) {
        // A colour camera that offers Y800 sends its raw mosaic under that name.
        return greyFormat ? sensor : PixelForm::grey;
    }
    if (subtype == subtypeBY8) {
        return sensor;
    }
    if (subtype == subtypeRGB8) {
        return PixelForm::grey;
    }
    if (subtype == subtypeRGB24) {
        return PixelForm::bgr;
    }
    if (subtype == subtypeRGB32) {
        return PixelForm::bgrx;
    }
    return std::nullopt;
}

GUID subtypeOf(PixelForm form, const GUID& asked) {
    if (!(asked == noIdentifier)) {
        return asked;
    }
    switch (form) {
        case PixelForm::bgr:
            return subtypeRGB24;
        case PixelForm::bgrx:
            return subtypeRGB32;
        case PixelForm::mosaic:
            return subtypeBY8;
        case PixelForm::grey:
            break;
    }
    return subtypeY800;
}

}  // namespace virtual_cameras
