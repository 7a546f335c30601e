// SPDX-License-Identifier: MIT
// The delivery thread's own part of a session: it chooses a buffer of the ring, draws
// the frame into it and tells the grabber's listeners.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/live/buffers.h"
#include "virtual_cameras/live/grabber_state.h"
#include "virtual_cameras/live/listeners.h"
#include "virtual_cameras/scenes/renderer.h"

namespace virtual_cameras {

// Used by one thread, which holds the lock at each call. Drawing and telling happen
// without it, so the grabber may be gone when a call returns.
class CFrameDelivery {
public:
    // The grabber has a device open, and a connected sink.
    CFrameDelivery(const GrabberState& grabber, const PictureShape& shape);

    // The next frame. False when it was dropped.
    bool deliver(CWorldLock& world, const GrabberState& grabber);
    void tellLost(CWorldLock& world, const GrabberState& grabber);

private:
    using BufferEntry = DShowLib::MemBufferCollection::Implementation::Entry;

    // What one delivery needs of the world, taken under its lock.
    struct Frame {
        FrameNews news;
        BufferEntry* entry;  // null when the frame is lost, or all buffers are locked
        bool overlay;
        bool newTone;
        ToneSettings tone;
    };

    Frame prepare(CWorldLock& world, const GrabberState& grabber);
    bool dropsNext(CWorldLock& world) const;
    BufferEntry* nextBuffer(CWorldLock& world);
    bool carryOut(const Frame& frame);

    const std::shared_ptr<Camera> m_camera;
    const DShowLib::smart_ptr<DShowLib::GrabberSinkType> m_sink;
    const DShowLib::smart_ptr<DShowLib::MemBufferCollection> m_ring;
    std::uint32_t m_number = 0;
    CRenderer m_renderer;
    std::uint64_t m_toneVersion = 0;
    std::vector<Listener> m_listeners;  // as they were when the event came about
};

}  // namespace virtual_cameras
