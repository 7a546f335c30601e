// SPDX-License-Identifier: MIT
// Which rig there is: by name, by file, by text, and how one replaces another.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "virtual_cameras/calls/world.h"
#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

Rig standardRig();
// A built-in rig, or the built-in rig and a scene for all of its cameras
// ("standard:counter"). A message when there is none of that name.
std::variant<Rig, std::string> rigByName(std::string_view name);
// The text of a description. The message holds line and column.
std::variant<Rig, std::string> rigByText(std::string_view toml);

std::vector<std::shared_ptr<Camera>> camerasOf(const Rig& rig);
// Takes all cameras away, which ends live video and tells listeners, and puts
// those of the rig in their place.
void replaceCameras(CWorldLock& world, const Rig& rig);

// Rig and clock as VIRTUAL_CAMERAS_RIG and VIRTUAL_CAMERAS_CLOCK say. What they
// say wrongly is reported on stderr; a wrong rig leaves no cameras.
void applyEnvironment(CWorldLock& world);

}  // namespace virtual_cameras
