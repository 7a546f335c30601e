// SPDX-License-Identifier: MIT
// What is refused of a rig description before toml++ reads it. Rig parser only.
#pragma once

#include <string_view>

namespace virtual_cameras {

// Throws a RigFailure with its place for a key of more parts than any rig needs, each of
// which would be one more table inside the other, and for letters beyond ASCII in a key
// without quotes. Leaves everything else to toml++.
void requireReadable(std::string_view toml);

}  // namespace virtual_cameras
