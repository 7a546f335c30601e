// SPDX-License-Identifier: MIT
// What becomes of those who have a camera open when it is taken away.
#pragma once

#include <memory>

#include "virtual_cameras/live/grabber_state.h"

namespace virtual_cameras {

// Ends live video. Returns when every grabber that has the camera open has been told,
// in which time the lock is let go; on a delivery thread live video may end later.
void unplugCamera(CWorldLock& world, const std::shared_ptr<Camera>& camera);
void plugCamera(CWorldLock& world, Camera& camera);

// Before a grabber goes: returns when nobody tells it of a loss any more, but at once
// to a listener that was just told.
void waitUntilLossIsTold(CWorldLock& world, const GrabberState& grabber);

}  // namespace virtual_cameras
