// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/misuses.h"

#include <string>

#include "virtual_cameras/calls/call_log.h"
#include "virtual_cameras/calls/monitor.h"

namespace virtual_cameras {

namespace {

struct Misuses {
    CMonitor monitor;
    std::uint32_t count GUARDED_BY(monitor) = 0;
    std::string last GUARDED_BY(monitor);
};

// Never destroyed: threads may still call while the process ends.
Misuses& theMisuses() {
    static Misuses& misuses = *new Misuses;
    return misuses;
}

}  // namespace

void countMisuse(std::string_view text) {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    ++misuses.count;
    misuses.last = text;
}

std::uint32_t misuses(char* last, std::uint32_t lastSize) {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    copyText(misuses.last, last, lastSize);
    return misuses.count;
}

void clearMisuses() {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    misuses.count = 0;
    misuses.last.clear();
}

}  // namespace virtual_cameras
