// SPDX-License-Identifier: MIT
// Does to the cameras what the events of their rig say. Where time runs by itself,
// whoever looks does what has fallen due: delivery threads for their own camera, and
// every call into the library for all. The stepped clock does it itself.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "virtual_cameras/live/camera.h"

namespace virtual_cameras {

// The cameras of a rig have come in.
void startEvents(CWorldLock& world);

// On the camera's delivery thread, before a frame is counted. The lock may be let go.
void beforeFrame(CWorldLock& world, const std::shared_ptr<Camera>& camera);

// False when nothing was due, or the clock is stepped. The lock may be let go.
bool performDueEvents(CWorldLock& world, const std::shared_ptr<Camera>& camera);
// Until the camera's next event; for ever with the stepped clock.
std::uint32_t millisecondsToEvent(CWorldLock& world, const Camera& camera);

// For the stepped clock: nanoseconds since the rig came in.
std::optional<std::uint64_t> nextEventTime(CWorldLock& world);
// The first that falls due up to `until`. The number of frames that it delivered.
std::uint32_t performNextEvent(CWorldLock& world, std::uint64_t until);

}  // namespace virtual_cameras
