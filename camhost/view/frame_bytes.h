// SPDX-License-Identifier: MIT
// The bytes of a frame as a page gets them: all, or every second, fourth, ... pixel and
// row. Portable.
#pragma once

#include <cstdint>
#include <vector>

#include "camhost/view/frame_store.h"
#include "camhost/view/http.h"

namespace camhost {

struct ReducedFrame {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t rowBytes = 0;
    std::vector<std::uint8_t> bytes;
};

// Every `step`th column from the left and row from the top of the picture, in the order in
// which the frame has them. Of a raw frame every `step`th cell of two by two pixels, so
// that its mosaic stays.
ReducedFrame reducedFrame(const ViewFrame& frame, std::size_t step);

// The answer with its X-Frame header. `isLost`: the camera that it came from is gone now.
HttpResponse frameResponse(const SharedFrame& frame, std::size_t step, bool isLost);

}  // namespace camhost
