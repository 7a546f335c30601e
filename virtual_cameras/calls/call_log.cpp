// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/call_log.h"

#include <algorithm>
#include <chrono>

namespace virtual_cameras {

void copyText(std::string_view text, char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) {
        return;
    }
    const std::size_t copied = std::min(text.size(), size - 1);
    std::copy_n(text.begin(), copied, buffer);
    buffer[copied] = '\0';
}

void CCallLog::record(bool on) {
    const CMonitorGuard guard(m_monitor);
    if (on) {
        m_calls.clear();
        m_next = 0;
    }
    m_on.store(on, std::memory_order_relaxed);
}

void CCallLog::clear() {
    const CMonitorGuard guard(m_monitor);
    m_on.store(false, std::memory_order_relaxed);
    m_calls.clear();
    m_next = 0;
}

void CCallLog::add(std::string_view camera, std::string_view operation, std::string_view arguments,
                   std::string_view result) {
    const CMonitorGuard guard(m_monitor);
    if (!isOn()) {
        return;
    }
    if (m_calls.size() == mostEntries) {
        m_calls.pop_front();
    }
    VirtualCamerasCall& call = m_calls.emplace_back();
    call.sequence = m_next++;
    call.threadId = ::GetCurrentThreadId();
    copyText(camera, call.camera, sizeof(call.camera));
    copyText(operation, call.operation, sizeof(call.operation));
    copyText(arguments, call.arguments, sizeof(call.arguments));
    copyText(result, call.result, sizeof(call.result));
    m_monitor.wakeAll();
}

std::uint64_t CCallLog::count() {
    const CMonitorGuard guard(m_monitor);
    return m_next;
}

bool CCallLog::get(std::uint64_t sequence, VirtualCamerasCall& call) {
    const CMonitorGuard guard(m_monitor);
    const std::uint64_t first = m_next - m_calls.size();
    if (sequence < first || sequence >= m_next) {
        return false;
    }
    call = m_calls[static_cast<std::size_t>(sequence - first)];
    return true;
}

bool CCallLog::find(std::string_view operation, std::uint64_t from, std::uint64_t& sequence) const {
    const std::uint64_t first = m_next - m_calls.size();
    for (std::uint64_t i = std::max(from, first); i < m_next; ++i) {
        if (operation == m_calls[static_cast<std::size_t>(i - first)].operation) {
            sequence = i;
            return true;
        }
    }
    return false;
}

bool CCallLog::waitFor(std::string_view operation, std::uint64_t from, std::uint32_t milliseconds,
                       std::uint64_t& sequence) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    const CMonitorGuard guard(m_monitor);
    while (!find(operation, from, sequence)) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        m_monitor.wait(static_cast<std::uint32_t>(left));
    }
    return true;
}

CCallLog& callLog() {
    // Never destroyed: threads may still call while the process ends.
    static CCallLog& log = *new CCallLog;
    return log;
}

}  // namespace virtual_cameras
