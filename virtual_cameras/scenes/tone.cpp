// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/tone.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace virtual_cameras {

CTone::CTone(const ToneSettings& settings) {
    constexpr double middle = 128.0;
    const double factors[4] = {settings.blue, settings.green, settings.red, 1.0};
    for (std::size_t plane = 0; plane < m_tables.size(); ++plane) {
        for (std::size_t value = 0; value < m_tables[plane].size(); ++value) {
            const double lit = static_cast<double>(value) * settings.light * factors[plane];
            const double toned =
                (std::min(lit, 255.0) - middle) * settings.contrast + middle + settings.brightness;
            m_tables[plane][value] =
                static_cast<std::uint8_t>(std::lround(std::clamp(toned, 0.0, 255.0)));
        }
    }
}

}  // namespace virtual_cameras
