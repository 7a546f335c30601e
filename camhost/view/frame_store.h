// SPDX-License-Identifier: MIT
// The frames that the view shows: the newest and a few before it, in memory that is used
// again once nobody reads it. Portable.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "camhost/pictures/bayer.h"
#include "camhost/pictures/frame_buffer.h"

namespace camhost {

struct ViewFrame {
    explicit ViewFrame(const FrameLayout& of) : layout(of), buffer(of) {}

    FrameLayout layout;
    CFrameBuffer buffer;
    std::optional<BayerOrder> order;  // of the mosaic that it is taken to have
    std::uint64_t number = 0;         // from 1, since the start of the view
    std::int32_t camera = 0;
    std::string serial;
    std::chrono::steady_clock::time_point taken;
};

using SharedFrame = std::shared_ptr<const ViewFrame>;

// Any thread.
class CFrameStore {
public:
    // Memory for a frame of this layout, spare or new.
    std::unique_ptr<ViewFrame> take(const FrameLayout& layout);
    // Back, unused.
    void giveBack(std::unique_ptr<ViewFrame> frame) { m_spares->giveBack(std::move(frame)); }

    SharedFrame add(std::unique_ptr<ViewFrame> frame);

    // Null when there is none, or none behind that number.
    SharedFrame newest(std::uint64_t after = 0) const;
    SharedFrame numbered(std::uint64_t number) const;

private:
    class CSpares {
    public:
        std::unique_ptr<ViewFrame> take(const FrameLayout& layout);
        void giveBack(std::unique_ptr<ViewFrame> frame);

    private:
        std::mutex m_mutex;
        std::vector<std::unique_ptr<ViewFrame>> m_frames;  // under m_mutex
    };

    // Outlives the store where a frame does.
    std::shared_ptr<CSpares> m_spares = std::make_shared<CSpares>();
    mutable std::mutex m_mutex;
    std::deque<SharedFrame> m_frames;  // under m_mutex, the newest last
};

}  // namespace camhost
