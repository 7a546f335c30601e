// SPDX-License-Identifier: MIT
// From the name of a rig, or from its description, to the rig.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

const Rig& standardRig();
// A built-in rig, or the built-in rig and a scene for all of its cameras
// ("standard:counter"). A message when there is none of that name.
std::variant<Rig, std::string> rigByName(std::string_view name);
// Whether the name, up to a colon, is that of a built-in rig.
bool isBuiltInRig(std::string_view name);
// Behind a message about a name that is none: a near one, and all there are.
std::string builtInRigsHint(std::string_view name);
// The text of a description; relative paths in it are of the folder, else of the current
// one. The message holds line and column.
std::variant<Rig, std::string> rigByText(std::string_view toml, const std::string& folder = {});

}  // namespace virtual_cameras
