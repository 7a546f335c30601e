// SPDX-License-Identifier: MIT
// One frame in memory while a scene is put into it: the pixel forms that a sink
// can ask for, and where a pixel lies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "platform/windows.h"
#include "virtual_cameras/rig/rig.h"
#include "virtual_cameras/scenes/tone.h"

namespace virtual_cameras {

enum class PixelForm {
    grey,    // one byte, top row first
    mosaic,  // one byte, what the sensor sees behind its colour mosaic, top row first
    bgr,     // blue, green, red; bottom row first
    bgrx     // blue, green, red, 0; bottom row first
};

struct PictureShape {
    std::int32_t width = 0;
    std::int32_t height = 0;
    PixelForm form = PixelForm::grey;
    BayerOrder bayer = BayerOrder::GBRG;
    bool colour = true;  // false: the colour planes show the grey too
};

std::size_t bytesPerPixel(PixelForm form);
std::size_t pictureBytes(const PictureShape& shape);

// The colour that the mosaic lets through at a place.
Plane mosaicPlane(BayerOrder order, std::int32_t row, std::int32_t column);

// The form in which frames of a media subtype are delivered, for a video format
// of the given text. The null subtype means the format's own. Nothing when frames
// of that subtype are not to be had.
std::optional<PixelForm> pixelFormFor(const GUID& subtype, const std::string& formatText,
                                      bool colour);
// The media subtype in which an answer names the form.
GUID subtypeOf(PixelForm form, const GUID& asked);

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
