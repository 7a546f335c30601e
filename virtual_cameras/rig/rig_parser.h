// SPDX-License-Identifier: MIT
// From the text of a rig description (docs/rig.md) to a rig.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

struct RigError {
    std::uint32_t line;
    std::uint32_t column;
    std::string message;
};

// "line:column: message"
std::string errorText(const RigError& error);

// Relative paths in it are of the folder, else of the current one.
std::variant<Rig, RigError> parseRig(std::string_view toml, const std::string& folder);

}  // namespace virtual_cameras
