// SPDX-License-Identifier: MIT
#include "camhost/view/frame_store.h"

#include <algorithm>
#include <utility>

namespace camhost {

namespace {

constexpr std::size_t mostSpares = 4;
// Frames behind the newest one, for a snapshot of what the page shows.
constexpr std::size_t mostKept = 16;
constexpr std::size_t mostKeptBytes = std::size_t{64} << 20U;

std::size_t fewEnough(const FrameLayout& layout) {
    return std::clamp<std::size_t>(mostKeptBytes / std::max<std::size_t>(1, frameBytes(layout)), 1,
                                   mostKept);
}

}  // namespace

std::unique_ptr<ViewFrame> CFrameStore::CSpares::take(const FrameLayout& layout) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_frames, [&](const auto& spare) { return spare->layout != layout; });
    if (m_frames.empty()) {
        return nullptr;
    }
    std::unique_ptr<ViewFrame> frame = std::move(m_frames.back());
    m_frames.pop_back();
    return frame;
}

void CFrameStore::CSpares::giveBack(std::unique_ptr<ViewFrame> frame) {
    const std::lock_guard lock(m_mutex);
    if (m_frames.size() < mostSpares) {
        m_frames.push_back(std::move(frame));
    }
}

std::unique_ptr<ViewFrame> CFrameStore::take(const FrameLayout& layout) {
    std::unique_ptr<ViewFrame> spare = m_spares->take(layout);
    return spare ? std::move(spare) : std::make_unique<ViewFrame>(layout);
}

SharedFrame CFrameStore::add(std::unique_ptr<ViewFrame> frame) {
    const std::size_t most = fewEnough(frame->layout);
    const std::shared_ptr<ViewFrame> shared(frame.release(), [spares = m_spares](ViewFrame* used) {
        spares->giveBack(std::unique_ptr<ViewFrame>(used));
    });
    std::vector<SharedFrame> gone;  // let go outside the lock
    const std::lock_guard lock(m_mutex);
    m_frames.push_back(shared);
    while (m_frames.size() > most) {
        gone.push_back(std::move(m_frames.front()));
        m_frames.pop_front();
    }
    return shared;
}

SharedFrame CFrameStore::newest(std::uint64_t after) const {
    const std::lock_guard lock(m_mutex);
    return m_frames.empty() || m_frames.back()->number <= after ? nullptr : m_frames.back();
}

SharedFrame CFrameStore::numbered(std::uint64_t number) const {
    const std::lock_guard lock(m_mutex);
    const auto found =
        std::find_if(m_frames.begin(), m_frames.end(),
                     [&](const SharedFrame& frame) { return frame->number == number; });
    return found == m_frames.end() ? nullptr : *found;
}

}  // namespace camhost
