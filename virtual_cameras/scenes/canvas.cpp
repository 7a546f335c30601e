// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/canvas.h"

#include <cstring>

namespace virtual_cameras {

namespace {

template <std::size_t bytes>
void repeat(std::uint8_t* to, const std::uint8_t* end, std::size_t stride,
            const std::uint8_t* four) {
    for (; to + bytes <= end; to += stride) {
        std::memcpy(to, four, bytes);
    }
}

}  // namespace

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
