// SPDX-License-Identifier: MIT
// Turns a scene into frames of one shape: the still part is kept, and each frame
// is a copy of it with that frame's stamp. One delivery thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "virtual_cameras/scenes/scene.h"

namespace virtual_cameras {

class CRenderer {
public:
    CRenderer(std::unique_ptr<CScene> scene, const PictureShape& shape);

    // Draws the still part anew for changed properties.
    void setTone(const ToneSettings& settings);
    // `memory` holds pictureBytes(shape) bytes.
    void render(std::uint32_t frame, std::uint8_t* memory) const;

private:
    std::unique_ptr<CScene> m_scene;
    PictureShape m_shape;
    CTone m_tone;
    std::vector<std::uint8_t> m_still;
};

}  // namespace virtual_cameras
