// SPDX-License-Identifier: MIT
#include "acquisition/frame_delivery.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "acquisition/frame_copy.h"

namespace {

std::span<const std::uint8_t> bytesOf(const DShowLib::MemBuffer& frame) {
    const std::uint8_t* data = frame.getData();
    return data != nullptr ? std::span(data, frame.getSize()) : std::span<const std::uint8_t>();
}

void CopyRaw8(std::uint8_t* destination, std::span<const std::uint8_t> frame,
              const CFrameSink& sink, const FrameShape& shape) {
    const FrameCopyKernels& kernels = frameCopyKernels();
    if (sink.isRawFromRgb32()) {
        kernels.mosaic(destination, frame, shape.width, shape.height);
    } else if (shape.rawUnshifted) {
        kernels.block(destination, frame, frameBytes(shape.width, shape.height));
    } else {
        kernels.shifted(destination, frame, shape.width, shape.height);
    }
}

}  // namespace

bool copyPixels(std::uint8_t* destination, const DShowLib::MemBuffer& frame, PixelType pixelType,
                const CFrameSink& sink, const FrameShape& shape) {
    switch (pixelType) {
        case PixelType::raw8:
            CopyRaw8(destination, bytesOf(frame), sink, shape);
            return true;
        case PixelType::rgb24: {
            const auto size = sink.outputSize();
            if (size) {
                frameCopyKernels().block(destination, bytesOf(frame),
                                         std::min<std::size_t>(*size, shape.colorLimit));
            }
            return size.has_value();
        }
        case PixelType::mono8:
            break;
    }
    frameCopyKernels().block(destination, bytesOf(frame), frameBytes(shape.width, shape.height));
    return true;
}
