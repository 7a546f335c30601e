// SPDX-License-Identifier: MIT
// The ordered log of calls. Entries are made when a call returns, so what a call
// made happen before its return stands before it. Any thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>

#include "virtual_cameras/calls/monitor.h"
#include "virtual_cameras/control.h"

namespace virtual_cameras {

class CCallLog {
public:
    // Cheap enough to ask on every call.
    bool isOn() const noexcept { return m_on.load(std::memory_order_relaxed); }

    // Switching on empties the log.
    void record(bool on);
    void clear();
    void add(std::string_view camera, std::string_view operation, std::string_view arguments,
             std::string_view result);
    std::uint64_t count();
    bool get(std::uint64_t sequence, VirtualCamerasCall& call);
    bool waitFor(std::string_view operation, std::uint64_t from, std::uint32_t milliseconds,
                 std::uint64_t& sequence);

private:
    // Beyond this the oldest entries go.
    static constexpr std::size_t mostEntries = 100'000;

    bool find(std::string_view operation, std::uint64_t from, std::uint64_t& sequence) const
        REQUIRES(m_monitor);

    std::atomic<bool> m_on{false};
    CMonitor m_monitor;
    std::deque<VirtualCamerasCall> m_calls GUARDED_BY(m_monitor);
    std::uint64_t m_next GUARDED_BY(m_monitor) = 0;
};

CCallLog& callLog();

// Copies what fits, and terminates.
void copyText(std::string_view text, char* buffer, std::size_t size);

}  // namespace virtual_cameras
