// SPDX-License-Identifier: MIT
// The scene of the user's own pictures: one a frame, over and over.
#pragma once

#include <memory>

#include "virtual_cameras/scenes/film.h"
#include "virtual_cameras/scenes/scene.h"

namespace virtual_cameras {

enum class PictureFit {
    scale,  // each to the size of the frame, by the nearest pixel
    crop    // pixel for pixel around the middle, with black where the picture ends
};

class CReplayScene final : public CScene {
public:
    // The film has at least one picture.
    CReplayScene(std::shared_ptr<const Film> film, PictureFit fit);

    SceneColor at(const PictureShape& shape, std::int32_t row, std::int32_t column) const override;
    void stamp(CCanvas& canvas, std::uint32_t frame) const override;

private:
    const std::shared_ptr<const Film> m_film;
    const PictureFit m_fit;
};

}  // namespace virtual_cameras
