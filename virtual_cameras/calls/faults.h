// SPDX-License-Identifier: MIT
// Calls that are to fail, as tests asked for them. Any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/calls/monitor.h"

namespace virtual_cameras {

struct Fault {
    std::int32_t kind;
    std::int32_t code;
    // Valid to the end of the process; never null.
    char* text;
};

class CFaults {
public:
    void add(std::string_view operation, std::uint32_t nth, std::uint32_t count, Fault fault,
             std::string_view text);
    void clear();

    // Counts this call. What is to happen to it, if anything.
    std::optional<Fault> next(std::string_view operation) {
        return m_any.load(std::memory_order_relaxed) ? nextOf(operation) : std::nullopt;
    }
    // A copy of a text that is never given back, as thrown texts must be.
    char* keep(std::string_view text);

private:
    struct Rule {
        std::string operation;
        std::uint64_t first;
        std::uint64_t count;  // 0: without end
        std::uint64_t seen;
        Fault fault;
    };

    std::optional<Fault> nextOf(std::string_view operation);

    std::atomic<bool> m_any{false};
    CMonitor m_monitor;
    std::vector<Rule> m_rules GUARDED_BY(m_monitor);
    // Each text and its copy, which does not move in a map.
    std::map<std::string, std::string, std::less<>> m_texts GUARDED_BY(m_monitor);
};

CFaults& faults();

}  // namespace virtual_cameras
