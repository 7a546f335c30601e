// SPDX-License-Identifier: MIT
// The state that the host thread and the delivery thread share over one frame.
#pragma once

#include <atomic>
#include <cstdint>

// Two flags in one atomic word: a frame has been handed over and not yet copied
// (ready), and the host is waiting (waiting). A third bit says that the delivery
// thread is between taking a wait and signalling it: for that time the held
// buffer is the delivery thread's alone, otherwise the host thread's. A host
// that gave up waiting in just that moment finds the buffer not its own, and
// leaves it.
//
// Each step is one atomic operation; steps that change both flags change them in
// one store. The steps of the delivery thread publish what it wrote before them
// to the host thread, and the other way round.
class CHandOver {
public:
    // Host thread.
    void beginWait() noexcept { m_word.fetch_or(waiting, std::memory_order_acq_rel); }
    void endWait() noexcept { clear(waiting); }
    void clearReady() noexcept { clear(ready); }
    void clearBoth() noexcept { clear(waiting | ready); }
    bool isReady() const noexcept { return (load() & ready) != 0; }
    bool hostOwnsBuffer() const noexcept { return (load() & handingOver) == 0; }

    // Delivery thread. True once for each wait: the frame is then ready, the wait
    // over, and the held buffer the caller's until endHandOver.
    bool takeIfWaiting() noexcept {
        std::uint16_t word = load();
        while ((word & waiting) != 0) {
            const auto taken = static_cast<std::uint16_t>((word & ~waiting) | ready | handingOver);
            if (m_word.compare_exchange_weak(word, taken, std::memory_order_acq_rel,
                                             std::memory_order_acquire)) {
                return true;
            }
        }
        return false;
    }
    void endHandOver() noexcept { clear(handingOver); }
    // The frame could not be held: nothing is ready, and the wait is over all the same.
    void abandonHandOver() noexcept { clear(handingOver | ready); }

private:
    static constexpr std::uint16_t ready = 0x0001;
    static constexpr std::uint16_t handingOver = 0x0002;
    static constexpr std::uint16_t waiting = 0x0100;

    std::uint16_t load() const noexcept { return m_word.load(std::memory_order_acquire); }
    void clear(std::uint16_t bits) noexcept {
        m_word.fetch_and(static_cast<std::uint16_t>(~bits), std::memory_order_acq_rel);
    }

    std::atomic<std::uint16_t> m_word{0};
};
static_assert(std::atomic<std::uint16_t>::is_always_lock_free);
