// SPDX-License-Identifier: MIT
// When the events of one camera start and end: counts its frames and calls, and knows
// the times. Pure; whoever owns it holds the world's lock. Allocates when it is made
// and never again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

// An event that starts or ends now. It stays valid for as long as its schedule.
struct EventTurn {
    const RigEvent* event;
    bool isEnd;
};

class CEventSchedule {
public:
    explicit CEventSchedule(std::vector<RigEvent> events);

    bool isEmpty() const noexcept { return m_events.empty(); }

    // Starts what begins with the camera's next frame, which counts only with countFrame.
    void beforeFrame();
    void countFrame() noexcept { ++m_frames; }

    // Whether a call of the operation makes any difference.
    bool concerns(std::string_view operation) const;
    // Counts a call, and starts what begins with it.
    void countCall(std::string_view operation);
    // What frames and calls have started, in the order of the rig.
    std::optional<EventTurn> takeStarted(std::uint64_t now);

    // By time. Nothing when no event starts or ends by itself any more.
    std::optional<std::uint64_t> nextTime() const;
    // The first that falls due up to `until`; the first of the rig where several do.
    std::optional<EventTurn> takeDue(std::uint64_t until);

    // The next calls of the event's operation fail.
    void arm(const RigEvent& event);
    // Whether and how this call fails.
    const RigFail* takeFailure(std::string_view operation);

private:
    // What became of the event with the same index.
    struct State {
        std::uint64_t random;
        std::uint64_t next;  // frame, call or time of the next start
        std::uint64_t calls = 0;
        std::uint32_t starts = 0;
        bool over = false;
        std::uint32_t toTake = 0;  // starts that nobody has taken yet
        std::optional<std::uint64_t> end;
        std::uint32_t failures = 0;  // calls that still fail
        bool failsForEver = false;
    };

    void start(std::size_t index);
    // The earlier of its next start and its end.
    std::optional<std::uint64_t> timeOf(std::size_t index) const;

    const std::vector<RigEvent> m_events;
    std::vector<State> m_states;
    std::uint64_t m_frames = 0;
};

}  // namespace virtual_cameras
