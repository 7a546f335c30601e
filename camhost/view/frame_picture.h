// SPDX-License-Identifier: MIT
// PNG files of frames, as a grab would write them. Portable.
#pragma once

#include <optional>
#include <string>

#include "camhost/pictures/picture_writer.h"
#include "camhost/view/frame_store.h"

namespace camhost {

struct PictureChoice {
    std::optional<BayerOrder> bayer{};  // none: as the frame is taken to be
    bool demosaic = false;
};

// "1A2B" of a camera with a serial number, else "camera0"; fit for a file's name.
std::string fileStem(const std::string& serial, std::int32_t camera);

// Named "1A2B_000071.png".
Picture pictureOf(const ViewFrame& frame, const PictureChoice& choice);
std::vector<std::uint8_t> encoded(const Picture& picture);

}  // namespace camhost
