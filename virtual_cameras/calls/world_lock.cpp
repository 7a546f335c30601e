// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/world_lock.h"

namespace virtual_cameras {

// Never destroyed: threads may still call while the process ends.
CMonitor& CWorldLock::s_monitor = *new CMonitor;

CWorldLock::CWorldLock() noexcept {
    s_monitor.lock();
}

CWorldLock::~CWorldLock() {
    s_monitor.unlock();
}

void CWorldLock::wait(std::uint32_t milliseconds) noexcept {
    s_monitor.wait(milliseconds);
}

void CWorldLock::wakeAll() noexcept {
    s_monitor.wakeAll();
}

}  // namespace virtual_cameras
