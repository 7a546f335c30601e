// SPDX-License-Identifier: MIT
// How a frame of the capture library reaches the host's memory, by pixel type.
#pragma once

#include <cstddef>
#include <cstdint>

#include "acquisition/frame_sink.h"
#include "capture/pixel_type.h"

// What the host knows of a frame, and a quirk of the camera's model.
struct FrameShape {
    std::int32_t width;  // pixels, of the last start
    std::int32_t height;
    bool rawUnshifted;       // raw frames are copied without the shift
    std::size_t colorLimit;  // bytes of an rgb24 frame that the host has room for
};

// One copy, straight into the destination, which holds what ImageInfo tells the host:
// width x height bytes (and one byte a row more at an odd width, where raw frames come
// from 32-bit pixels), or for rgb24 the sink's output size within the limit. Nothing is
// read past the frame. False, with nothing copied, where the sink does not tell its
// output size. Host thread.
bool copyPixels(std::uint8_t* destination, const DShowLib::MemBuffer& frame, PixelType pixelType,
                const CFrameSink& sink, const FrameShape& shape);
