// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/canvas.h"

#include <algorithm>
#include <string>

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

template <std::size_t bytes>
void repeat(std::uint8_t* to, const std::uint8_t* end, std::size_t stride,
            const std::uint8_t* four) {
    for (; to + bytes <= end; to += stride) {
        std::memcpy(to, four, bytes);
    }
}

bool startsWith(const std::string& text, std::string_view start) {
    return text.compare(0, start.size(), start) == 0;
}

}  // namespace

std::size_t bytesPerPixel(PixelForm form) {
    switch (form) {
        case PixelForm::bgr:
            return 3;
        case PixelForm::bgrx:
            return 4;
        case PixelForm::grey:
        case PixelForm::mosaic:
            break;
    }
    return 1;
}

std::size_t pictureBytes(const PictureShape& shape) {
    return bytesPerPixel(shape.form) * static_cast<std::size_t>(shape.width) *
           static_cast<std::size_t>(shape.height);
}

Plane mosaicPlane(BayerOrder order, std::int32_t row, std::int32_t column) {
    constexpr Plane planes[4][4] = {{Plane::green, Plane::blue, Plane::red, Plane::green},
                                    {Plane::green, Plane::red, Plane::blue, Plane::green},
                                    {Plane::blue, Plane::green, Plane::green, Plane::red},
                                    {Plane::red, Plane::green, Plane::green, Plane::blue}};
    return planes[static_cast<std::size_t>(order)][(row & 1) * 2 + (column & 1)];
}

std::optional<PixelForm> pixelFormFor(const GUID& subtype, const std::string& formatText,
                                      bool colour) {
    const bool greyFormat = startsWith(formatText, "Y800");
    const PixelForm sensor = colour ? PixelForm::mosaic : PixelForm::grey;
    if (subtype == noIdentifier) {
        if (greyFormat || startsWith(formatText, "BY8")) {
            return sensor;
        }
        return startsWith(formatText, "RGB32") ? PixelForm::bgrx : PixelForm::bgr;
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

void CCanvas::encode(std::int32_t row, std::int32_t column, const SceneColor& toned,
                     std::uint8_t* pixel) const noexcept {
    if (m_shape.form == PixelForm::grey) {
        *pixel = toned.grey;
        return;
    }
    const SceneColor shown =
        m_shape.colour ? toned : SceneColor{toned.grey, toned.grey, toned.grey, toned.grey};
    if (m_shape.form == PixelForm::mosaic) {
        const std::uint8_t planes[3] = {shown.blue, shown.green, shown.red};
        *pixel = planes[static_cast<std::size_t>(mosaicPlane(m_shape.bayer, row, column))];
        return;
    }
    pixel[0] = shown.blue;
    pixel[1] = shown.green;
    pixel[2] = shown.red;
    if (m_shape.form == PixelForm::bgrx) {
        pixel[3] = 0;
    }
}

void CCanvas::putFours(std::int32_t row, std::int32_t first, std::int32_t step,
                       const SceneColor (&four)[4]) noexcept {
    std::uint8_t encoded[16] = {};
    for (std::int32_t i = 0; i < 4; ++i) {
        encode(row, first + i, m_tone(four[i]),
               encoded + static_cast<std::size_t>(i) * m_pixelBytes);
    }
    std::uint8_t* const start = rowMemory(row);
    std::uint8_t* const end = start + m_rowBytes;
    std::uint8_t* const to = start + static_cast<std::size_t>(first) * m_pixelBytes;
    const std::size_t stride = static_cast<std::size_t>(step) * m_pixelBytes;
    switch (m_pixelBytes) {
        case 1:
            repeat<4>(to, end, stride, encoded);
            break;
        case 3:
            repeat<12>(to, end, stride, encoded);
            break;
        default:
            repeat<16>(to, end, stride, encoded);
            break;
    }
    // Fewer than four may fit at the end of the row.
    std::int32_t column = first;
    while (column + 4 <= m_shape.width) {
        column += step;
    }
    for (std::int32_t i = 0; column + i < m_shape.width && i < 4; ++i) {
        put(row, column + i, four[i]);
    }
}

}  // namespace virtual_cameras
