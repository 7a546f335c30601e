// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/delivery_session.h"

#include <algorithm>
#include <utility>

#include "virtual_cameras/live/camera_events.h"

namespace virtual_cameras {

CDeliverySession::CDeliverySession(CWorldLock& world, GrabberState& grabber,
                                   const PictureShape& shape, const DeliveryClock& clock)
    : m_camera(grabber.camera),
      m_grabber(&grabber),
      m_schedule(world, clock, m_camera->deliveryRate()),
      m_delivery(grabber, shape) {}

bool CDeliverySession::waitsForTrigger(CWorldLock& world) const {
    return m_camera->properties->triggerIsOn(world);
}

bool CDeliverySession::isHeld(CWorldLock& world) const {
    return m_camera->trouble.holdsFrames() || waitsForTrigger(world);
}

bool CDeliverySession::isOwnThread(CWorldLock&) const noexcept {
    return m_threadId == ::GetCurrentThreadId();
}

bool CDeliverySession::isCallingListeners(CWorldLock& world) const noexcept {
    return isOwnThread(world) && !m_finished;
}

void CDeliverySession::start(CWorldLock&, const std::shared_ptr<CDeliverySession>& session) {
    session->m_thread = std::thread([session] { session->run(); });
}

void CDeliverySession::run() {
    CWorldLock world;
    m_threadId = ::GetCurrentThreadId();
    while (!m_stopping) {
        if (performDueEvents(world, m_camera)) {
            continue;
        }
        if (!m_requests.isEmpty(world)) {
            m_requests.serveFirst(world, [&] { return deliver(world); });
            continue;
        }
        const std::uint32_t milliseconds = millisecondsToNext(world);
        if (milliseconds == 0) {
            deliver(world);
        } else {
            world.wait(milliseconds);
        }
    }
    if (m_lost && m_grabber != nullptr) {
        m_delivery.tellLost(world, *m_grabber);
    }
    m_finished = true;
    m_requests.refuseAll(world);
}

bool CDeliverySession::deliver(CWorldLock& world) {
    beforeFrame(world, m_camera);
    if (m_stopping || m_camera->trouble.holdsFrames() || m_grabber == nullptr) {
        return false;
    }
    m_camera->events->countFrame();
    return m_delivery.deliver(world, *m_grabber);
}

std::uint32_t CDeliverySession::millisecondsToNext(CWorldLock& world) {
    if (m_soon > 0 && waitsForTrigger(world)) {
        --m_soon;
        return 0;
    }
    m_soon = 0;
    const std::uint32_t frame =
        isHeld(world) ? CMonitor::forEver : m_schedule.millisecondsToNext(world);
    // A due event is done before.
    return std::min(frame, millisecondsToEvent(world, *m_camera));
}

bool CDeliverySession::deliverNow(CWorldLock& world) {
    const bool delivered =
        !m_stopping && !m_finished && !m_camera->trouble.holdsFrames() && m_requests.ask(world);
    waitUntilLossIsTold(world);
    return delivered;
}

void CDeliverySession::waitUntilLossIsTold(CWorldLock& world) const {
    while (hasUntoldLoss(world)) {
        world.wait(CMonitor::forEver);
    }
}

void CDeliverySession::deliverSoon(CWorldLock& world) noexcept {
    ++m_soon;
    world.wakeAll();
}

void CDeliverySession::stop(CWorldLock& world) {
    m_stopping = true;
    if (m_camera->live.get() == this) {
        m_camera->live.reset();
    }
    world.wakeAll();
}

bool CDeliverySession::join(CWorldLock& world) {
    if (!m_thread.joinable()) {
        while (!m_joined) {
            world.wait(CMonitor::forEver);
        }
        return false;
    }
    std::thread ending = std::move(m_thread);
    world.whileUnlocked([&] { ending.join(); });
    m_joined = true;
    world.wakeAll();
    return true;
}

void CDeliverySession::leaveGrabber(CWorldLock&) {
    if (m_grabber != nullptr && m_grabber->session.get() == this) {
        m_grabber->session.reset();
    }
}

bool CDeliverySession::abandon(CWorldLock&) {
    m_grabber = nullptr;
    if (!m_thread.joinable()) {
        return false;
    }
    m_thread.detach();
    return true;
}

}  // namespace virtual_cameras
