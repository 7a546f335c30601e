// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/frame_schedule.h"

#include <algorithm>

namespace virtual_cameras {

std::uint64_t DeliveryClock::rigTime() const {
    if (isStepped()) {
        return steppedTime - steppedStart;
    }
    const std::chrono::nanoseconds passed = std::chrono::steady_clock::now() - realStart;
    return static_cast<std::uint64_t>(passed.count());
}

void DeliveryClock::startRig() {
    steppedStart = steppedTime;
    realStart = std::chrono::steady_clock::now();
}

CFrameSchedule::CFrameSchedule(CWorldLock& world, const DeliveryClock& clock,
                               double framesPerSecond)
    : m_clock(clock) {
    setRate(world, framesPerSecond);
}

std::uint32_t CFrameSchedule::millisecondsToNext(CWorldLock&) {
    if (m_clock.isStepped()) {
        return CMonitor::forEver;
    }
    if (m_clock.mode == VIRTUAL_CAMERAS_CLOCK_FAST) {
        return 0;
    }
    const auto now = std::chrono::steady_clock::now();
    if (m_nextTime > now) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_nextTime - now);
        return static_cast<std::uint32_t>(left.count());
    }
    // What could not be delivered in time is not made up for.
    m_nextTime = std::max(m_nextTime, now - m_period) + m_period;
    return 0;
}

void CFrameSchedule::setRate(CWorldLock& world, double framesPerSecond) {
    m_period = std::chrono::nanoseconds(static_cast<std::int64_t>(1e9 / framesPerSecond));
    restart(world);
}

void CFrameSchedule::restart(CWorldLock& world) {
    restartSteps(world);
    m_nextTime = std::chrono::steady_clock::now() + m_period;
}

}  // namespace virtual_cameras
