// SPDX-License-Identifier: MIT
// Names in rigs as people write them: in letters of any case, and mistyped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace virtual_cameras {

// ASCII letters only.
bool sameIgnoringCase(std::string_view left, std::string_view right);

// `; did you mean "serial"?`, or nothing when no name is near.
std::string meantText(std::string_view wrong, const std::vector<std::string_view>& known);

}  // namespace virtual_cameras
