// SPDX-License-Identifier: MIT
// What a camera looks at. A scene has a still part, computed once for a picture
// shape, and what changes from frame to frame.
#pragma once

#include <cstdint>

#include "virtual_cameras/scenes/canvas.h"

namespace virtual_cameras {

class CScene {
public:
    CScene() = default;
    CScene(const CScene&) = delete;
    CScene& operator=(const CScene&) = delete;
    virtual ~CScene() = default;

    // The still part at a place of a picture of the shape's size.
    virtual SceneColor at(const PictureShape& shape, std::int32_t row,
                          std::int32_t column) const = 0;
    // Puts what belongs to this frame over the still part.
    virtual void stamp(CCanvas& canvas, std::uint32_t frame) const = 0;
};

}  // namespace virtual_cameras
