// SPDX-License-Identifier: MIT
// The events of a camera in a rig description. Rig parser only.
#pragma once

#include <cstddef>
#include <vector>

#include "virtual_cameras/rig/rig.h"
#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

// The camera is complete but for its events; the rig has `cameras` cameras.
std::vector<RigEvent> readEvents(const toml::node& node, const RigCamera& camera,
                                 std::size_t cameras);

}  // namespace virtual_cameras
