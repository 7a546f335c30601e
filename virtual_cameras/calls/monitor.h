// SPDX-License-Identifier: MIT
// A lock with one condition, and the guard for a stretch of code under it.
// Slim locks, since the standard condition is slow in the Windows build.
#pragma once

#include <cstdint>

#include "platform/windows.h"
#include "virtual_cameras/calls/thread_annotations.h"

namespace virtual_cameras {

class CAPABILITY("monitor") CMonitor {
public:
    static constexpr std::uint32_t forEver = INFINITE;

    CMonitor() noexcept {
        ::InitializeSRWLock(&m_lock);
        ::InitializeConditionVariable(&m_condition);
    }
    CMonitor(const CMonitor&) = delete;
    CMonitor& operator=(const CMonitor&) = delete;

    void lock() noexcept ACQUIRE() { ::AcquireSRWLockExclusive(&m_lock); }
    void unlock() noexcept RELEASE() { ::ReleaseSRWLockExclusive(&m_lock); }
    // Lets go of the lock until woken or the time is over. May wake for nothing.
    void wait(std::uint32_t milliseconds) noexcept REQUIRES(this) {
        ::SleepConditionVariableSRW(&m_condition, &m_lock, milliseconds, 0);
    }
    void wakeAll() noexcept { ::WakeAllConditionVariable(&m_condition); }

private:
    SRWLOCK m_lock;
    CONDITION_VARIABLE m_condition;
};

class SCOPED_CAPABILITY CMonitorGuard {
public:
    explicit CMonitorGuard(CMonitor& monitor) noexcept ACQUIRE(monitor) : m_monitor(monitor) {
        m_monitor.lock();
    }
    CMonitorGuard(const CMonitorGuard&) = delete;
    CMonitorGuard& operator=(const CMonitorGuard&) = delete;
    ~CMonitorGuard() RELEASE() { m_monitor.unlock(); }

private:
    CMonitor& m_monitor;
};

}  // namespace virtual_cameras
