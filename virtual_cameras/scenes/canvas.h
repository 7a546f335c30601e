// SPDX-License-Identifier: MIT
// One frame in memory while a scene is put into it: where a pixel lies, and how it
// is written.
#pragma once

#include <cstddef>
#include <cstdint>

#include "virtual_cameras/scenes/picture.h"
#include "virtual_cameras/scenes/tone.h"

namespace virtual_cameras {

class CCanvas {
public:
    // `memory` holds pictureBytes(shape) bytes.
    CCanvas(const PictureShape& shape, const CTone& tone, std::uint8_t* memory) noexcept
        : m_shape(shape),
          m_tone(tone),
          m_memory(memory),
          m_pixelBytes(bytesPerPixel(shape.form)),
          m_rowBytes(m_pixelBytes * static_cast<std::size_t>(shape.width)) {}

    const PictureShape& shape() const noexcept { return m_shape; }

    // Row 0 is the top.
    void put(std::int32_t row, std::int32_t column, const SceneColor& color) noexcept {
        encode(row, column, m_tone(color),
               rowMemory(row) + static_cast<std::size_t>(column) * m_pixelBytes);
    }

    // Puts four neighbours at columns first, first + step, ... of a row; `step` is even.
    void putFours(std::int32_t row, std::int32_t first, std::int32_t step,
                  const SceneColor (&four)[4]) noexcept;

private:
    std::uint8_t* rowMemory(std::int32_t row) const noexcept {
        const bool bottomUp = m_shape.form == PixelForm::bgr || m_shape.form == PixelForm::bgrx;
        const std::int32_t place = bottomUp ? m_shape.height - 1 - row : row;
        return m_memory + static_cast<std::size_t>(place) * m_rowBytes;
    }
    void encode(std::int32_t row, std::int32_t column, const SceneColor& toned,
                std::uint8_t* pixel) const noexcept;

    const PictureShape& m_shape;
    const CTone& m_tone;
    std::uint8_t* m_memory;
    std::size_t m_pixelBytes;
    std::size_t m_rowBytes;
};

}  // namespace virtual_cameras
