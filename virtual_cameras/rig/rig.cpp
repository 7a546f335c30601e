// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig.h"

#include <array>
#include <charconv>

namespace virtual_cameras {

std::string cameraId(const RigCamera& camera) {
    if (!camera.serial) {
        return camera.name;
    }
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::uint64_t>(*camera.serial), 16)
                         .ptr;
    std::string text(digits.data(), end);
    for (char& digit : text) {
        digit = digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
    }
    return text;
}

}  // namespace virtual_cameras
