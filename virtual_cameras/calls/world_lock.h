// SPDX-License-Identifier: MIT
// One lock over all that changes in this process: cameras, grabbers, sinks,
// properties and live video. It is never held while a listener is called, a frame is
// drawn or a thread is joined.
#pragma once

#include <cstdint>
#include <utility>

#include "virtual_cameras/calls/monitor.h"

namespace virtual_cameras {

// Holds the lock. A function that takes one works on what is under it.
class SCOPED_CAPABILITY CWorldLock {
public:
    CWorldLock() noexcept ACQUIRE(s_monitor);
    CWorldLock(const CWorldLock&) = delete;
    CWorldLock& operator=(const CWorldLock&) = delete;
    ~CWorldLock() RELEASE();

    // Lets go of the lock until somebody wakes, or the time is over.
    void wait(std::uint32_t milliseconds) noexcept NO_THREAD_SAFETY_ANALYSIS;
    void wakeAll() noexcept;

    template <class Work>
    void whileUnlocked(Work&& work) NO_THREAD_SAFETY_ANALYSIS {
        s_monitor.unlock();
        std::forward<Work>(work)();
        s_monitor.lock();
    }

private:
    static CMonitor& s_monitor;
};

}  // namespace virtual_cameras
