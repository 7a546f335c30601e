// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/faults.h"

namespace virtual_cameras {

void CFaults::add(std::string_view operation, std::uint32_t nth, std::uint32_t count, Fault fault,
                  std::string_view text) {
    fault.text = keep(text);
    const CMonitorGuard guard(m_monitor);
    m_rules.push_back({std::string(operation), nth == 0 ? 1U : nth, count, 0, fault});
    m_any.store(true, std::memory_order_relaxed);
}

void CFaults::clear() {
    const CMonitorGuard guard(m_monitor);
    m_rules.clear();
    m_any.store(false, std::memory_order_relaxed);
}

char* CFaults::keep(std::string_view text) {
    const CMonitorGuard guard(m_monitor);
    return m_texts.try_emplace(std::string(text), text).first->second.data();
}

std::optional<Fault> CFaults::nextOf(std::string_view operation) {
    const CMonitorGuard guard(m_monitor);
    std::optional<Fault> result;
    for (Rule& rule : m_rules) {
        if (rule.operation != operation) {
            continue;
        }
        ++rule.seen;
        const bool hit =
            rule.seen >= rule.first && (rule.count == 0 || rule.seen < rule.first + rule.count);
        if (hit && !result) {
            result = rule.fault;
        }
    }
    return result;
}

CFaults& faults() {
    // Never destroyed: threads may still call while the process ends.
    static CFaults& instance = *new CFaults;
    return instance;
}

}  // namespace virtual_cameras
