// SPDX-License-Identifier: MIT
// What a mistyped name was likely meant to be. For messages about rigs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace virtual_cameras {

// `; did you mean "serial"?`, or nothing when no name is near.
std::string meantText(std::string_view wrong, const std::vector<std::string_view>& known);

}  // namespace virtual_cameras
