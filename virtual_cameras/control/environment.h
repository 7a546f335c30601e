// SPDX-License-Identifier: MIT
// What the process was told by its environment.
#pragma once

#include <optional>
#include <string>

namespace virtual_cameras {

// In UTF-8. Nothing when the variable is not set or empty.
std::optional<std::string> environmentText(const char* name);

}  // namespace virtual_cameras
