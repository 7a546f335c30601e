// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/deliveries.h"

#include <algorithm>

#include "virtual_cameras/live/camera_events.h"

namespace virtual_cameras {

void CDeliveries::start(CWorldLock& world, GrabberState& grabber, const PictureShape& shape) {
    grabber.camera->trouble.hung = false;
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

void CDeliveries::lose(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session) {
    session->markLost(world);
    if (areCallingListeners(world)) {
        session->stop(world);
    } else {
        end(world, session);
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
    if (!m_clock.isStepped()) {
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

// Never back: what was overdue is done now.
void CDeliveries::moveTo(std::uint64_t steppedTime) {
    m_clock.steppedTime = std::max(m_clock.steppedTime, steppedTime);
}

void CDeliveries::waitUntilLossesAreTold(CWorldLock& world) const {
    const auto next = [&] {
        const auto found =
            std::find_if(m_sessions.begin(), m_sessions.end(),
                         [&](const auto& session) { return session->hasUntoldLoss(world); });
        return found != m_sessions.end() ? *found : nullptr;
    };
    // The list may change on the way.
    while (const std::shared_ptr<CDeliverySession> session = next()) {
        session->waitUntilLossIsTold(world);
    }
}

std::uint32_t CDeliveries::deliverUntil(CWorldLock& world, std::uint64_t until) {
    std::uint32_t delivered = 0;
    for (;;) {
        waitUntilLossesAreTold(world);
        const std::shared_ptr<CDeliverySession> session = firstDue(world, until);
        const std::uint64_t frame = session ? session->schedule(world).nextStep(world) : until;
        // Of a frame and an event at the same time the event comes first.
        if (const auto event = nextEventTime(world);
            event && m_clock.steppedStart + *event <= frame) {
            moveTo(m_clock.steppedStart + *event);
            delivered += performNextEvent(world, *event);
            continue;
        }
        if (!session) {
            break;
        }
        moveTo(frame);
        session->schedule(world).takeStep(world);
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
        if (session->isStopping(world) || session->isHeld(world)) {
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
    m_clock.startRig();
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
