// SPDX-License-Identifier: MIT
// The scenes there are: one row each, for the parser of rigs and for the camera.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "virtual_cameras/scenes/film.h"
#include "virtual_cameras/scenes/replay.h"
#include "virtual_cameras/scenes/scene.h"

namespace virtual_cameras {

// What a rig can set of a scene. Each scene takes what concerns it.
struct SceneSettings {
    std::uint32_t seed = 1;            // noise
    std::uint8_t value = 128;          // flat
    std::shared_ptr<const Film> film;  // replay
    PictureFit fit = PictureFit::scale;
};

struct SceneKind {
    std::string_view name;  // in rigs
    std::unique_ptr<CScene> (*make)(const SceneSettings& settings);
    bool showsPictures = false;  // the rig has to name them
};

std::span<const SceneKind> sceneKinds();
// Null when there is no scene of that name.
const SceneKind* sceneCalled(std::string_view name);
// What a camera looks at whose rig names no scene.
const SceneKind& usualScene();

}  // namespace virtual_cameras
