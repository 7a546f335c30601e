// SPDX-License-Identifier: MIT
// The inside of a frame sink: what it accepts, and what it is connected to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "capture/library/frame_sink.h"
#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/scenes/picture.h"

// Read and written under the world's lock only.
struct DShowLib::GrabberSinkType::Implementation {
    DShowLib::FrameHandlerSink::tCreateData data;
    bool snap = false;
    bool connected = false;
    DShowLib::FrameTypeInfo output{};                         // while connected
    DShowLib::smart_ptr<DShowLib::MemBufferCollection> ring;  // once connected
    std::uint32_t nextBuffer = 0;
};

namespace virtual_cameras {

struct Camera;
using SinkState = DShowLib::GrabberSinkType::Implementation;

// The shape in which the sink takes the camera's frames now. Nothing when it
// takes none of them.
std::optional<PictureShape> shapeFor(CWorldLock& world, const SinkState& sink,
                                     const Camera& camera);
// Gives the sink its output type, and a ring of the right size. False, and the
// sink not connected, when it takes none of the camera's frames.
bool connectSink(CWorldLock& world, SinkState& sink, const Camera& camera);

}  // namespace virtual_cameras
