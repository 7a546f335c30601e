// SPDX-License-Identifier: MIT
#include "camhost/view/jobs.h"

#include <utility>

namespace camhost {

namespace {

constexpr std::size_t mostWaiting = 256;

}  // namespace

HttpResponse endedResponse() {
    return failureResponse(503, {.code = "ended", .message = "the view has ended"});
}

std::shared_ptr<CAnswerSlot> CJobs::add(Job job) {
    const std::lock_guard lock(m_mutex);
    if (m_waiting.size() >= mostWaiting) {
        return nullptr;
    }
    auto slot = std::make_shared<CAnswerSlot>();
    if (m_ended) {
        slot->set(endedResponse());
    } else {
        m_waiting.push_back({std::move(job), slot});
    }
    return slot;
}

std::optional<CJobs::Waiting> CJobs::next() {
    const std::lock_guard lock(m_mutex);
    if (m_waiting.empty()) {
        return std::nullopt;
    }
    std::optional<Waiting> first = std::move(m_waiting.front());
    m_waiting.pop_front();
    return first;
}

void CJobs::end() {
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    for (const Waiting& waiting : m_waiting) {
        waiting.slot->set(endedResponse());
    }
    m_waiting.clear();
}

}  // namespace camhost
