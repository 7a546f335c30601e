// SPDX-License-Identifier: MIT
// The property items of a camera in a rig description. Rig parser only.
#pragma once

#include <vector>

#include "virtual_cameras/rig/rig.h"
#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

std::vector<RigItem> readItems(const toml::node& node);

}  // namespace virtual_cameras
