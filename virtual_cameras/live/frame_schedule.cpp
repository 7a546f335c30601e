// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/frame_schedule.h"

#include <algorithm>

namespace virtual_cameras {

CFrameSchedule::CFrameSchedule(CWorldLock& world, const DeliveryClock& clock,
                               double framesPerSecond)
    : m_clock(clock), m_period(static_cast<std::int64_t>(1e9 / framesPerSecond)) {
    restart(world);
}

std::uint32_t CFrameSchedule::millisecondsToNext(CWorldLock&) {
    if (m_clock.mode == VIRTUAL_CAMERAS_CLOCK_STEPPED) {
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

void CFrameSchedule::restart(CWorldLock& world) {
    restartSteps(world);
    m_nextTime = std::chrono::steady_clock::now() + m_period;
}

}  // namespace virtual_cameras
