// SPDX-License-Identifier: MIT
// What the properties of a camera do to its picture: one lookup per plane.
#pragma once

#include <array>
#include <cstdint>

#include "virtual_cameras/scenes/scene_code.h"

namespace virtual_cameras {

// Relative to the values of the rig; as they stand here the picture is unchanged.
struct ToneSettings {
    double light = 1.0;       // exposure and gain, as a factor
    double contrast = 1.0;    // spread around the middle grey
    double brightness = 0.0;  // added grey levels
    double red = 1.0;         // white balance
    double green = 1.0;
    double blue = 1.0;
};

// One value of a scene in all planes.
struct SceneColor {
    std::uint8_t blue;
    std::uint8_t green;
    std::uint8_t red;
    std::uint8_t grey;
};

// The grey of a colour, by the usual weights.
constexpr SceneColor sceneColor(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return {static_cast<std::uint8_t>(blue), static_cast<std::uint8_t>(green),
            static_cast<std::uint8_t>(red),
            static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000)};
}

class CTone {
public:
    CTone() : CTone(ToneSettings{}) {}
    explicit CTone(const ToneSettings& settings);

    SceneColor operator()(const SceneColor& color) const noexcept {
        return {m_tables[0][color.blue], m_tables[1][color.green], m_tables[2][color.red],
                m_tables[3][color.grey]};
    }

private:
    std::array<std::array<std::uint8_t, 256>, 4> m_tables;  // by Plane
};

}  // namespace virtual_cameras
