// SPDX-License-Identifier: MIT
// Pictures of the user's own, read from files: PNG, PGM or PPM.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "virtual_cameras/scenes/tone.h"

namespace virtual_cameras {

struct FilmPicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<SceneColor> pixels;  // top row first
};

// At least one.
using Film = std::vector<FilmPicture>;

// One picture, or the pictures of a folder in the order of their names; paths in UTF-8. Why not, as
// it follows the name of the path.
std::variant<std::shared_ptr<const Film>, std::string> loadFilm(const std::string& path);

}  // namespace virtual_cameras
