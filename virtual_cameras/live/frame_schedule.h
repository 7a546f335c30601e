// SPDX-License-Identifier: MIT
// The clock by which all cameras deliver, and when the frames of one session fall
// due on it.
#pragma once

#include <chrono>
#include <cstdint>

#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/control.h"

namespace virtual_cameras {

// Read and written under the world's lock only.
struct DeliveryClock {
    std::int32_t mode = VIRTUAL_CAMERAS_CLOCK_REAL;
    std::uint64_t steppedTime = 0;  // nanoseconds

    // When the present rig came in, on both clocks.
    std::uint64_t steppedStart = 0;
    std::chrono::steady_clock::time_point realStart;

    bool isStepped() const noexcept { return mode == VIRTUAL_CAMERAS_CLOCK_STEPPED; }
    // Nanoseconds since then. The fast clock has no time of its own.
    std::uint64_t rigTime() const;
    void startRig();
};

class CFrameSchedule {
public:
    // The first frame falls due one period from now.
    CFrameSchedule(CWorldLock& world, const DeliveryClock& clock, double framesPerSecond);

    // How long the thread may sleep before the next frame; 0: it is due, and taken to
    // be delivered now.
    std::uint32_t millisecondsToNext(CWorldLock& world);

    // When the next frame falls due on the stepped clock.
    std::uint64_t nextStep(CWorldLock&) const noexcept { return m_nextStep; }
    void takeStep(CWorldLock&) noexcept { m_nextStep += steps(); }

    // From now on; the next frame falls due one new period from now.
    void setRate(CWorldLock& world, double framesPerSecond);
    // The next frame falls due one period from now, on both clocks.
    void restart(CWorldLock& world);
    // On the stepped clock alone.
    void restartSteps(CWorldLock&) noexcept { m_nextStep = m_clock.steppedTime + steps(); }

private:
    std::uint64_t steps() const noexcept { return static_cast<std::uint64_t>(m_period.count()); }

    const DeliveryClock& m_clock;
    std::chrono::nanoseconds m_period{};
    std::uint64_t m_nextStep = 0;
    std::chrono::steady_clock::time_point m_nextTime;
};

}  // namespace virtual_cameras
