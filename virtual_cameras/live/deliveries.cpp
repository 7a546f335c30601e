// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/deliveries.h"

#include <algorithm>

namespace virtual_cameras {

void CDeliveries::start(CWorldLock& world, GrabberState& grabber, const PictureShape& shape) {
    const auto session = std::make_shared<CDeliverySession>(world, grabber, shape, m_clock);
    grabber.session = session;
    grabber.camera->live = session;
    m_sessions.push_back(session);
    CDeliverySession::start(world, session);
}

void CDeliveries::end(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session) {
    session->stop(world);
    if (!session->isOwnThread(world) && session->join(world)) {
        session->leaveGrabber(world);
        forget(world, session);
    }
}

void CDeliveries::abandon(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session) {
    if (session->abandon(world)) {
        forget(world, session);
    }
}

bool CDeliveries::areCallingListeners(CWorldLock& world) const {
    return std::any_of(m_sessions.begin(), m_sessions.end(),
                       [&](const auto& session) { return session->isCallingListeners(world); });
}

std::uint32_t CDeliveries::step(CWorldLock& world, std::uint64_t nanoseconds) {
    if (m_clock.mode != VIRTUAL_CAMERAS_CLOCK_STEPPED) {
        return 0;
    }
    while (m_stepping) {
        world.wait(CMonitor::forEver);
    }
    m_stepping = true;
    const std::uint32_t delivered = deliverUntil(world, m_clock.steppedTime + nanoseconds);
    m_stepping = false;
    world.wakeAll();
    return delivered;
}

std::uint32_t CDeliveries::deliverUntil(CWorldLock& world, std::uint64_t until) {
    std::uint32_t delivered = 0;
    while (const std::shared_ptr<CDeliverySession> session = firstDue(world, until)) {
        CFrameSchedule& schedule = session->schedule(world);
        m_clock.steppedTime = std::max(m_clock.steppedTime, schedule.nextStep(world));
        schedule.takeStep(world);
        if (session->deliverNow(world)) {
            ++delivered;
        }
    }
    m_clock.steppedTime = until;
    // Who waited for a trigger starts counting when it runs free again.
    for (const std::shared_ptr<CDeliverySession>& session : m_sessions) {
        CFrameSchedule& schedule = session->schedule(world);
        if (schedule.nextStep(world) <= until) {
            schedule.restartSteps(world);
        }
    }
    return delivered;
}

// Whose frame falls due first, up to a time; null when no frame does.
std::shared_ptr<CDeliverySession> CDeliveries::firstDue(CWorldLock& world,
                                                        std::uint64_t until) const {
    std::shared_ptr<CDeliverySession> first;
    for (const std::shared_ptr<CDeliverySession>& session : m_sessions) {
        if (session->isStopping(world) || session->waitsForTrigger(world)) {
            continue;
        }
        const std::uint64_t due = session->schedule(world).nextStep(world);
        if (due <= until && (!first || due < first->schedule(world).nextStep(world))) {
            first = session;
        }
    }
    return first;
}

void CDeliveries::setClock(CWorldLock& world, std::int32_t mode) {
    m_clock.mode = mode;
    for (const std::shared_ptr<CDeliverySession>& session : m_sessions) {
        session->schedule(world).restart(world);
    }
    world.wakeAll();
}

void CDeliveries::resetClock(CWorldLock& world) {
    setClock(world, VIRTUAL_CAMERAS_CLOCK_REAL);
    m_clock.steppedTime = 0;
}

void CDeliveries::forget(CWorldLock&, const std::shared_ptr<CDeliverySession>& session) {
    m_sessions.erase(std::remove(m_sessions.begin(), m_sessions.end(), session), m_sessions.end());
}

CDeliveries& deliveries() {
    // Never destroyed: threads may still call while the process ends.
    static CDeliveries& instance = *new CDeliveries;
    return instance;
}

}  // namespace virtual_cameras
