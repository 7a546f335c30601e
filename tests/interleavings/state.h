// SPDX-License-Identifier: MIT
// One moment of a channel with its listener, its ring of buffers and its two threads.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "tests/interleavings/word.h"

namespace interleavings {

inline constexpr std::uint8_t ringSize = 2;
// Where the held buffer stays when a lost camera comes back with another ring.
inline constexpr std::uint8_t formerRing = ringSize;
inline constexpr std::uint8_t bufferCount = ringSize + 1;
inline constexpr std::int8_t noBuffer = -1;
inline constexpr std::uint8_t idle = 0xFF;

// Of the width of the flags below: an int beside one of them would make an int of both.
inline constexpr std::uint8_t no = 0;
inline constexpr std::uint8_t yes = 1;

enum Thread : std::uint8_t { host, delivery };
// What a release by one thread and an acquire by the other meet at.
enum Meeting : std::uint8_t { atWord = 1, atEvent = 2, atLibrary = 4 };
// Plain memory that both threads touch: the listener's handle with its flag, and the pixels.
enum Place : std::uint8_t { holder, firstPixels };
inline constexpr std::uint8_t placeCount = firstPixels + bufferCount;

// For each thread and place: 0 where the other thread knows of the last access, else that
// it was made, and the meetings at which it waits to be seen.
class Publication {
public:
    // False for a data race.
    bool access(Thread thread, std::uint8_t place) noexcept {
        if (pending(other(thread), place) != 0) {
            return false;
        }
        pending(thread, place) = made;
        return true;
    }
    void release(Thread thread, Meeting meeting) noexcept {
        for (std::uint8_t& each : m_pending.at(thread)) {
            each = each != 0 ? static_cast<std::uint8_t>(each | meeting) : each;
        }
    }
    void acquire(Thread thread, Meeting meeting) noexcept {
        for (std::uint8_t& each : m_pending.at(other(thread))) {
            each = (each & meeting) != 0 ? no : each;
        }
    }
    // The delivery thread has ended, or is none of the two any more.
    void join() noexcept { m_pending = {}; }

private:
    static constexpr std::uint8_t made = 0x80;

    static Thread other(Thread thread) noexcept { return thread == host ? delivery : host; }
    std::uint8_t& pending(Thread thread, std::uint8_t place) noexcept {
        return m_pending.at(thread).at(place);
    }

    std::array<std::array<std::uint8_t, placeCount>, 2> m_pending{};
};

struct State {
    // What is really there.
    Word word;
    std::uint8_t signalled = 0;  // the event
    std::int8_t held = noBuffer;
    std::uint8_t bufferLocked = 0;  // the listener's flag
    std::array<std::uint8_t, bufferCount> locks{};
    std::uint8_t connected = 1;
    std::uint8_t live = 0;
    std::uint8_t closed = 0;

    // Where the threads are, and what they keep from one step to the next.
    std::uint8_t operation = idle;
    std::uint8_t hostStep = 0;
    std::uint8_t mayTouch = 0;
    std::uint8_t woken = 0;
    std::uint8_t deliveryStep = idle;
    std::int8_t filled = noBuffer;
    std::uint8_t failed = 0;  // the library threw in the hand-over
    std::uint8_t signals = 0;
    Word loaded;

    // What has to be true, kept apart from what the steps look at.
    std::uint8_t hostTouches = 0;
    std::uint8_t deliveryOwns = 0;
    std::uint8_t hostWaits = 0;
    std::uint8_t served = 0;    // this wait
    std::uint8_t frameDue = 0;  // taken, and neither copied nor given up
    std::uint8_t promised = 0;  // the wait before told the host of a frame
    std::uint8_t heldIsOld = 0;
    std::uint8_t signalSpent = 0;  // it has ended a wait already
    Publication publication;

    std::uint8_t lockCount() const noexcept {
        std::uint8_t count = 0;
        for (const std::uint8_t each : locks) {
            count = static_cast<std::uint8_t>(count + each);
        }
        return count;
    }
    std::uint8_t& locksOf(std::int8_t buffer) { return locks.at(static_cast<std::size_t>(buffer)); }
    bool holdsLocked() const {
        return held != noBuffer && locks.at(static_cast<std::size_t>(held)) != 0;
    }
};
// Explored states are told apart by their bytes.
static_assert(std::has_unique_object_representations_v<State>);

}  // namespace interleavings
