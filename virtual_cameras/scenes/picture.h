// SPDX-License-Identifier: MIT
// What kind of picture a scene is put into: its size, the form of its pixels, and
// the mosaic of the sensor.
#pragma once

#include <cstddef>
#include <cstdint>

#include "virtual_cameras/scenes/scene_code.h"

namespace virtual_cameras {

enum class PixelForm {
    grey,    // one byte, top row first
    mosaic,  // one byte, what the sensor sees behind its colour mosaic, top row first
    bgr,     // blue, green, red; bottom row first
    bgrx     // blue, green, red, 0; bottom row first
};

// The mosaic in front of a colour sensor, by the colours of its two first rows.
enum class BayerOrder { GBRG, GRBG, BGGR, RGGB };

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

}  // namespace virtual_cameras
