// SPDX-License-Identifier: MIT
// The scene for people: a red corner at the top left, the word TOP, colour
// patches, a grey ramp, and the frame number.
#pragma once

#include "virtual_cameras/scenes/scene.h"

namespace virtual_cameras {

class CColorChart final : public CScene {
public:
    SceneColor at(const PictureShape& shape, std::int32_t row, std::int32_t column) const override;
    void stamp(CCanvas& canvas, std::uint32_t frame) const override;
};

}  // namespace virtual_cameras
