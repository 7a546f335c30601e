// SPDX-License-Identifier: MIT
// Which rig and which clock there are: what the control interface chose, else what the
// environment says where the library starts, else the standard rig in real time.
#pragma once

#include <cstdint>
#include <string>

#include "virtual_cameras/live/camera_list.h"

namespace virtual_cameras {

// The cameras, which are those of the standard rig until another has come in.
const CCameraList& presentCameras(CWorldLock& world);

// From now on the environment does not count.
void chooseRig(CWorldLock& world, const Rig& rig);
void chooseClock(CWorldLock& world, std::int32_t mode);

// Rig and clock as VIRTUAL_CAMERAS_RIG and VIRTUAL_CAMERAS_CLOCK say. What they
// say wrongly is reported on stderr; a wrong rig leaves no cameras.
void applyEnvironment(CWorldLock& world);

// What was wrong with the environment's rig when it was applied last; empty for nothing.
std::string rigMistake(CWorldLock& world);

// Back to the standard rig and real time; the environment counts again.
void forgetChoices(CWorldLock& world);

}  // namespace virtual_cameras
