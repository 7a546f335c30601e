// SPDX-License-Identifier: MIT
// All live video of this process, and the clock that drives it. A delivery thread may
// call every member but step, which would wait for itself.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "virtual_cameras/live/delivery_session.h"

namespace virtual_cameras {

// Read and written under the world's lock only.
class CDeliveries {
public:
    // The grabber has a device open, and a connected sink.
    void start(CWorldLock& world, GrabberState& grabber, const PictureShape& shape);
    // Returns when no listener is called any more, but on the session's own thread
    // returns at once: the session then ends when the listener has returned.
    void end(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session);
    // Before the session's grabber is destroyed, perhaps by a listener that it called.
    void abandon(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session);

    // As end, and listeners are told of a loss. On any delivery thread returns at once,
    // since two of those could wait for each other.
    void lose(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session);

    // Whether the caller is the delivery thread of any session.
    bool areCallingListeners(CWorldLock& world) const;

    // Delivers what falls due within a time of the stepped clock; 0 with another clock.
    std::uint32_t step(CWorldLock& world, std::uint64_t nanoseconds);
    void setClock(CWorldLock& world, std::int32_t mode);
    const DeliveryClock& clock(CWorldLock&) const noexcept { return m_clock; }
    // A rig has come in now.
    void startRig(CWorldLock&) { m_clock.startRig(); }
    // Real time, and the stepped clock at its start.
    void resetClock(CWorldLock& world);

private:
    std::shared_ptr<CDeliverySession> firstDue(CWorldLock& world, std::uint64_t until) const;
    void moveTo(std::uint64_t steppedTime);
    // Of cameras that went on another's delivery thread.
    void waitUntilLossesAreTold(CWorldLock& world) const;
    std::uint32_t deliverUntil(CWorldLock& world, std::uint64_t until);
    void forget(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session);

    std::vector<std::shared_ptr<CDeliverySession>> m_sessions;  // live, or not yet over
    DeliveryClock m_clock;
    bool m_stepping = false;  // one thread at a time
};

CDeliveries& deliveries();

}  // namespace virtual_cameras
