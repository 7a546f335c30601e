// SPDX-License-Identifier: MIT
// The rigs that are always there, as texts of the rig language.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace virtual_cameras {

// Nothing when there is no such rig.
std::optional<std::string_view> builtInRig(std::string_view name);

std::vector<std::string_view> builtInRigNames();

}  // namespace virtual_cameras
