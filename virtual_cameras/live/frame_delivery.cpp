// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/frame_delivery.h"

#include "virtual_cameras/calls/faults.h"
#include "virtual_cameras/calls/misuses.h"

namespace virtual_cameras {

namespace {

std::unique_ptr<CScene> sceneOf(const Camera& camera) {
    const RigScene& scene = camera.rig.scene;
    return scene.kind->make(scene.settings);
}

}  // namespace

CFrameDelivery::CFrameDelivery(const GrabberState& grabber, const PictureShape& shape)
    : m_camera(grabber.camera),
      m_sink(grabber.sink),
      m_ring(grabber.sink->implementation()->ring),
      m_renderer(sceneOf(*grabber.camera), shape) {
    m_listeners.reserve(grabber.listeners.size());
}

bool CFrameDelivery::deliver(CWorldLock& world, const GrabberState& grabber) {
    const Frame frame = prepare(world, grabber);
    bool delivered = false;
    world.whileUnlocked([&] { delivered = carryOut(frame); });
    return delivered;
}

void CFrameDelivery::tellLost(CWorldLock& world, const GrabberState& grabber) {
    m_listeners = grabber.listeners;
    DShowLib::Grabber& owner = *grabber.owner;
    world.whileUnlocked([&] { tellDeviceLost(m_listeners, owner, m_camera->id); });
}

CFrameDelivery::Frame CFrameDelivery::prepare(CWorldLock& world, const GrabberState& grabber) {
    Frame frame{{*grabber.owner, m_camera->id, ++m_number},
                dropsNext(world) ? nullptr : nextBuffer(world),
                grabber.overlayPaths != 0,
                false,
                {}};
    m_listeners = grabber.listeners;
    const std::uint64_t version = m_camera->properties->version(world);
    if (version != m_toneVersion) {
        m_toneVersion = version;
        frame.newTone = true;
        frame.tone = m_camera->properties->tone(world);
    }
    return frame;
}

// Whether the camera is to lose the frame on its way.
bool CFrameDelivery::dropsNext(CWorldLock&) const {
    const bool drops = m_camera->trouble.drops > 0;
    m_camera->trouble.drops -= drops ? 1U : 0U;
    return drops;
}

// The next of the ring that is not locked; null when all are.
CFrameDelivery::BufferEntry* CFrameDelivery::nextBuffer(CWorldLock&) {
    auto& buffers = insideOf(*m_ring)->buffers;
    SinkState& sink = *m_sink->implementation();
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        const std::size_t index = (sink.nextBuffer + i) % buffers.size();
        if (buffers[index].buffer->locks.load(std::memory_order_acquire) == 0) {
            sink.nextBuffer = static_cast<std::uint32_t>((index + 1) % buffers.size());
            return &buffers[index];
        }
    }
    return nullptr;
}

// Without the lock. True when the frame arrived.
bool CFrameDelivery::carryOut(const Frame& frame) {
    if (frame.newTone) {
        m_renderer.setTone(frame.tone);
    }
    if (frame.entry == nullptr) {
        tellFrameDropped(m_listeners, frame.news, {});
        return false;
    }
    m_renderer.render(frame.news.number, frame.entry->buffer->memory.get());
    if (faults().next("GrabberListener::frameReady", *m_camera)) {
        tellFrameDropped(m_listeners, frame.news, frame.entry->handle);
        return false;
    }
    try {
        tellFrameReady(m_listeners, frame.news, frame.entry->handle, frame.entry->buffer->index,
                       frame.overlay);
    } catch (...) {
        // What the library itself threw in a call of the listener's comes back here too.
        countMisuse("a listener threw");
        return false;
    }
    return true;
}

}  // namespace virtual_cameras
