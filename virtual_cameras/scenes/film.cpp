// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/film.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_PNM
#define STBI_NO_STDIO
#define STBI_NO_FAILURE_STRINGS
#define STBI_NO_THREAD_LOCALS
#define STBI_MAX_DIMENSIONS 8192
#include <stb/stb_image.h>

#include "virtual_cameras/files/files.h"

namespace virtual_cameras {

namespace {

constexpr std::size_t longestFile = std::size_t{256} << 20U;
// A film is kept whole, so that no frame waits for a file.
constexpr std::size_t mostPixels = std::size_t{128} << 20U;

bool isPictureName(const std::string& name) {
    std::string ending = name.substr(std::min(name.rfind('.'), name.size()));
    std::transform(ending.begin(), ending.end(), ending.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    constexpr std::array<std::string_view, 3> endings = {".png", ".pgm", ".ppm"};
    return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

// Nothing when the bytes are no such picture, or one that is too large.
std::optional<FilmPicture> decode(const std::string& content) {
    const auto* bytes = reinterpret_cast<const stbi_uc*>(content.data());
    int width = 0;
    int height = 0;
    int channels = 0;
    const int size = static_cast<int>(content.size());
    if (stbi_info_from_memory(bytes, size, &width, &height, &channels) == 0 ||
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) > mostPixels) {
        return std::nullopt;
    }
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
        stbi_load_from_memory(bytes, size, &width, &height, &channels, 3), stbi_image_free);
    if (!pixels) {
        return std::nullopt;
    }
    FilmPicture picture{width, height, {}};
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    picture.pixels.reserve(count);
    for (const stbi_uc* pixel = pixels.get(); picture.pixels.size() < count; pixel += 3) {
        picture.pixels.push_back(sceneColor(pixel[0], pixel[1], pixel[2]));
    }
    return picture;
}

std::vector<std::string> pictureNamesIn(const std::string& folder) {
    std::vector<std::string> names = fileNamesIn(folder);
    const auto others = std::remove_if(
        names.begin(), names.end(), [](const std::string& name) { return !isPictureName(name); });
    names.erase(others, names.end());
    return names;
}

}  // namespace

std::variant<std::shared_ptr<const Film>, std::string> loadFilm(const std::string& path) {
    const bool ofFolder = isFolder(path);
    const std::vector<std::string> names = ofFolder ? pictureNamesIn(path) : std::vector{path};
    if (names.empty()) {
        return "holds no picture; PNG, PGM and PPM files are pictures";
    }
    auto film = std::make_shared<Film>();
    std::size_t pixels = 0;
    for (const std::string& name : names) {
        const auto content = fileContent(ofFolder ? seenFrom(path, name) : path, longestFile);
        if (!content && !ofFolder) {
            return "is no file and no folder";
        }
        std::optional<FilmPicture> picture = decode(content.value_or(std::string()));
        const std::string which = ofFolder ? ": " + name : std::string();
        if (!picture) {
            return "is no PNG, PGM or PPM picture of at most 8192 by 8192 pixels" + which;
        }
        pixels += picture->pixels.size();
        if (pixels > mostPixels) {
            return "has more than " + std::to_string(mostPixels) + " pixels in all" + which;
        }
        film->push_back(std::move(*picture));
    }
    return std::shared_ptr<const Film>(std::move(film));
}

}  // namespace virtual_cameras
