// SPDX-License-Identifier: MIT
// The steps of the hand-over, one by one, and between two threads.
#include "acquisition/hand_over.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

TEST(HandOver, StartsWithNoFrameAndNoWait) {
    CHandOver handOver;
    EXPECT_FALSE(handOver.isReady());
    EXPECT_TRUE(handOver.hostOwnsBuffer());
    EXPECT_FALSE(handOver.takeIfWaiting());
}

TEST(HandOver, FrameIsTakenOncePerWait) {
    CHandOver handOver;
    handOver.beginWait();
    EXPECT_TRUE(handOver.takeIfWaiting());
    handOver.endHandOver();
    EXPECT_FALSE(handOver.takeIfWaiting());
    EXPECT_FALSE(handOver.takeIfWaiting());
    handOver.beginWait();
    EXPECT_TRUE(handOver.takeIfWaiting());
}

TEST(HandOver, TakenFrameIsReadyAtOnce) {
    CHandOver handOver;
    handOver.beginWait();
    EXPECT_FALSE(handOver.isReady());
    handOver.takeIfWaiting();
    EXPECT_TRUE(handOver.isReady());
    handOver.endHandOver();
    EXPECT_TRUE(handOver.isReady());
}

TEST(HandOver, BufferBelongsToTheDeliveryThreadFromTakeToEnd) {
    CHandOver handOver;
    handOver.beginWait();
    EXPECT_TRUE(handOver.hostOwnsBuffer());
    handOver.takeIfWaiting();
    EXPECT_FALSE(handOver.hostOwnsBuffer());
    handOver.endHandOver();
    EXPECT_TRUE(handOver.hostOwnsBuffer());
}

TEST(HandOver, FrameWithoutAWaitChangesNothing) {
    CHandOver handOver;
    EXPECT_FALSE(handOver.takeIfWaiting());
    EXPECT_FALSE(handOver.isReady());
    EXPECT_TRUE(handOver.hostOwnsBuffer());
}

TEST(HandOver, EndedWaitTakesNoFrame) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.endWait();
    EXPECT_FALSE(handOver.takeIfWaiting());
    EXPECT_FALSE(handOver.isReady());
}

TEST(HandOver, EndingAWaitKeepsTheReadyFrame) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.endHandOver();
    handOver.endWait();
    EXPECT_TRUE(handOver.isReady());
}

TEST(HandOver, ClearingTheReadyFrameKeepsTheWait) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.endHandOver();
    handOver.beginWait();
    handOver.clearReady();
    EXPECT_FALSE(handOver.isReady());
    EXPECT_TRUE(handOver.takeIfWaiting());
}

TEST(HandOver, ClearingBothEndsTheWaitAndDropsTheFrame) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.endHandOver();
    handOver.beginWait();
    handOver.clearBoth();
    EXPECT_FALSE(handOver.isReady());
    EXPECT_FALSE(handOver.takeIfWaiting());
}

TEST(HandOver, HostsStepsLeaveTheDeliveryThreadItsBuffer) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.endWait();
    handOver.clearReady();
    handOver.clearBoth();
    handOver.beginWait();
    EXPECT_FALSE(handOver.hostOwnsBuffer());
    handOver.endHandOver();
    EXPECT_TRUE(handOver.hostOwnsBuffer());
}

TEST(HandOver, AbandonedHandOverLeavesNoFrameAndGivesTheBufferBack) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.abandonHandOver();
    EXPECT_FALSE(handOver.isReady());
    EXPECT_TRUE(handOver.hostOwnsBuffer());
    EXPECT_FALSE(handOver.takeIfWaiting());
}

TEST(HandOver, AbandonedHandOverKeepsTheNextWait) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.beginWait();
    handOver.abandonHandOver();
    EXPECT_TRUE(handOver.takeIfWaiting());
}

TEST(HandOver, EndingAHandOverKeepsTheNextWait) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.takeIfWaiting();
    handOver.beginWait();
    handOver.endHandOver();
    EXPECT_TRUE(handOver.isReady());
    EXPECT_TRUE(handOver.takeIfWaiting());
}

TEST(HandOver, RepeatedWaitIsOneWait) {
    CHandOver handOver;
    handOver.beginWait();
    handOver.beginWait();
    EXPECT_TRUE(handOver.takeIfWaiting());
    handOver.endHandOver();
    EXPECT_FALSE(handOver.takeIfWaiting());
}

TEST(HandOver, IsNotCopied) {
    static_assert(!std::is_copy_constructible_v<CHandOver>);
    static_assert(!std::is_copy_assignable_v<CHandOver>);
}

// What the hand-over protects: plain memory, which both threads use in turn. Lies on
// the heap with its hand-over: the thread sanitizer follows no local variable. Each note
// has eight bytes of its own: of more accesses to the same eight it forgets some.
using Note = std::int64_t;
struct Shared {
    CHandOver handOver;
    Note note = 0;
    Note hostsNote = 0;
    Note deliverysNote = 0;
    Note copyOfNote = 0;
};

template <class Condition>
void spinUntil(Condition&& condition) {
    while (!condition()) {
        std::this_thread::yield();
    }
}

TEST(HandOver, AWaitPublishesWhatTheHostWroteBeforeIt) {
    const auto shared = std::make_unique<Shared>();
    std::thread delivery([&] {
        spinUntil([&] { return shared->handOver.takeIfWaiting(); });
        EXPECT_EQ(7, shared->hostsNote);
    });
    shared->hostsNote = 7;
    shared->handOver.beginWait();
    delivery.join();
}

TEST(HandOver, AReadyFramePublishesWhatTheDeliveryThreadWroteBeforeIt) {
    const auto shared = std::make_unique<Shared>();
    // Orders nothing: the hand-over alone does.
    std::atomic<bool> isRead{false};
    shared->handOver.beginWait();
    std::thread delivery([&] {
        shared->deliverysNote = 7;
        EXPECT_TRUE(shared->handOver.takeIfWaiting());
        spinUntil([&] { return isRead.load(std::memory_order_relaxed); });
        shared->handOver.endHandOver();
    });
    spinUntil([&] { return shared->handOver.isReady(); });
    EXPECT_EQ(7, shared->deliverysNote);
    isRead.store(true, std::memory_order_relaxed);
    delivery.join();
}

TEST(HandOver, ABufferThatIsTheHostsAgainHoldsWhatTheDeliveryThreadWrote) {
    const auto shared = std::make_unique<Shared>();
    shared->handOver.beginWait();
    std::thread delivery([&] {
        EXPECT_TRUE(shared->handOver.takeIfWaiting());
        shared->deliverysNote = 7;
        shared->handOver.endHandOver();
    });
    spinUntil([&] { return shared->handOver.isReady() && shared->handOver.hostOwnsBuffer(); });
    EXPECT_EQ(7, shared->deliverysNote);
    delivery.join();
}

TEST(HandOver, AFrameAfterAWaitSeesWhatTheHostWroteBeforeItsEnd) {
    const auto shared = std::make_unique<Shared>();
    std::atomic<bool> isOver{false};
    shared->handOver.beginWait();
    std::thread delivery([&] {
        spinUntil([&] { return isOver.load(std::memory_order_relaxed); });
        EXPECT_FALSE(shared->handOver.takeIfWaiting());
        EXPECT_EQ(7, shared->hostsNote);
    });
    shared->hostsNote = 7;
    shared->handOver.endWait();
    isOver.store(true, std::memory_order_relaxed);
    delivery.join();
}

// One step of a thread, by the name that a failure shows.
struct Step {
    const char* name;
    void (*run)(CHandOver& handOver);
};

constexpr Step hostsSteps[] = {{"beginWait", [](CHandOver& h) { h.beginWait(); }},
                               {"endWait", [](CHandOver& h) { h.endWait(); }},
                               {"clearReady", [](CHandOver& h) { h.clearReady(); }},
                               {"clearBoth", [](CHandOver& h) { h.clearBoth(); }}};
constexpr Step hostsLooks[] = {
    {"isReady", [](CHandOver& h) { static_cast<void>(h.isReady()); }},
    {"hostOwnsBuffer", [](CHandOver& h) { static_cast<void>(h.hostOwnsBuffer()); }}};
constexpr Step deliverysSteps[] = {
    {"takeIfWaiting", [](CHandOver& h) { static_cast<void>(h.takeIfWaiting()); }},
    {"endHandOver", [](CHandOver& h) { h.endHandOver(); }},
    {"abandonHandOver", [](CHandOver& h) { h.abandonHandOver(); }}};

// Runs `first` on this thread with a note before it, and `second` on another one with a
// look at the note after it. Nothing but the hand-over orders the two: not even what
// tells the other thread that it is its turn, which lies on the heap as well.
struct Turn : Shared {
    std::atomic<bool> isOthers{false};
};

void expectPublished(const Step& first, const Step& second) {
    SCOPED_TRACE(std::string(first.name) + " to " + second.name);
    const auto turn = std::make_unique<Turn>();
    turn->handOver.beginWait();
    std::thread other([&turn = *turn, &second] {
        spinUntil([&turn] { return turn.isOthers.load(std::memory_order_relaxed); });
        second.run(turn.handOver);
        EXPECT_EQ(7, turn.note);
    });
    turn->note = 7;
    first.run(turn->handOver);
    turn->isOthers.store(true, std::memory_order_relaxed);
    other.join();
}

TEST(HandOver, EveryStepOfTheHostPublishesToEveryStepOfTheDeliveryThread) {
    for (const Step& first : hostsSteps) {
        for (const Step& second : deliverysSteps) {
            expectPublished(first, second);
        }
    }
}

TEST(HandOver, EveryStepOfTheDeliveryThreadPublishesToEveryStepAndLookOfTheHost) {
    for (const Step& first : deliverysSteps) {
        for (const Step& second : hostsSteps) {
            expectPublished(first, second);
        }
        for (const Step& second : hostsLooks) {
            expectPublished(first, second);
        }
    }
}

// Delivers numbered frames until told to stop.
void deliver(Shared& shared, const std::atomic<bool>& stop) {
    for (int number = 1; !stop.load(std::memory_order_relaxed); ++number) {
        if (shared.handOver.takeIfWaiting()) {
            shared.deliverysNote = number;
            std::this_thread::yield();
            shared.copyOfNote = number;
            shared.handOver.endHandOver();
        }
        std::this_thread::yield();
    }
}

// One wait that lasts until a frame has come over or `patience` looks were in vain.
void waitForFrame(CHandOver& handOver, int patience) {
    handOver.beginWait();
    for (int look = 0; look < patience && !handOver.isReady(); ++look) {
        std::this_thread::yield();
    }
    handOver.endWait();
}

TEST(HandOver, FramesComeOverWholeAndInOrderWhateverTheHostsPatience) {
    const auto shared = std::make_unique<Shared>();
    std::atomic<bool> stop{false};
    std::thread delivery([&] { deliver(*shared, stop); });

    int copies = 0;
    Note lastNumber = 0;
    int torn = 0;
    int outOfOrder = 0;
    for (int wait = 0; copies < 500; ++wait) {
        waitForFrame(shared->handOver, wait % 8);
        // Also after a wait in vain: a delivery may be in its last steps, or done.
        if (shared->handOver.hostOwnsBuffer() && shared->handOver.isReady()) {
            torn += shared->deliverysNote != shared->copyOfNote ? 1 : 0;
            outOfOrder += shared->deliverysNote <= lastNumber ? 1 : 0;
            lastNumber = shared->deliverysNote;
            ++shared->hostsNote;
            shared->handOver.clearReady();
            ++copies;
        }
    }
    stop.store(true, std::memory_order_relaxed);
    delivery.join();
    EXPECT_EQ(0, torn);
    EXPECT_EQ(0, outOfOrder);
    EXPECT_EQ(500, shared->hostsNote);
}

// A host of no patience: frames come while it gives up, and while it waits again. Often
// enough for either to fall into the middle of a step of the delivery thread.
constexpr int manyWaits = 300000;

TEST(HandOver, AFrameSeesWhatTheHostWroteBeforeTheLatestOfManyWaits) {
    const auto shared = std::make_unique<Shared>();
    std::atomic<bool> stop{false};
    std::thread delivery([&] {
        Note lastNote = 0;
        while (!stop.load(std::memory_order_relaxed)) {
            if (shared->handOver.takeIfWaiting()) {
                EXPECT_GT(shared->hostsNote, lastNote);
                lastNote = shared->hostsNote;
                shared->handOver.endHandOver();
            }
        }
    });
    for (int wait = 1; wait <= manyWaits; ++wait) {
        spinUntil([&] { return shared->handOver.hostOwnsBuffer(); });
        shared->hostsNote = wait;
        shared->handOver.beginWait();
        shared->handOver.endWait();
    }
    stop.store(true, std::memory_order_relaxed);
    delivery.join();
}

TEST(HandOver, NoStepOfOneThreadUndoesAStepOfTheOther) {
    const auto turn = std::make_unique<Turn>();
    CHandOver& handOver = turn->handOver;
    std::thread delivery([&turn = *turn] {
        while (!turn.isOthers.load(std::memory_order_relaxed)) {
            if (turn.handOver.takeIfWaiting()) {
                EXPECT_FALSE(turn.handOver.hostOwnsBuffer());
                turn.handOver.endHandOver();
                EXPECT_TRUE(turn.handOver.hostOwnsBuffer());
            }
        }
    });
    for (int wait = 1; wait <= manyWaits; ++wait) {
        // Again and again, and below look upon look: often enough for one to fall between
        // two steps of the delivery thread.
        for (int again = 0; again < 8; ++again) {
            handOver.beginWait();
        }
        const bool isTaken = !handOver.hostOwnsBuffer();
        EXPECT_TRUE(!isTaken || handOver.isReady());
        handOver.endWait();
        const bool isReady = handOver.isReady();
        spinUntil([&] { return handOver.hostOwnsBuffer(); });
        for (int look = 0; look < 4; ++look) {
            EXPECT_TRUE(handOver.hostOwnsBuffer());
        }
        EXPECT_EQ(isReady, handOver.isReady());
        handOver.clearReady();
    }
    turn->isOthers.store(true, std::memory_order_relaxed);
    delivery.join();
}

TEST(HandOver, ADroppedFrameSeesWhatTheHostWroteBeforeTheEndOfItsWait) {
    const auto shared = std::make_unique<Shared>();
    std::vector<int> notes(manyWaits + 1);
    std::atomic<int> begun{0};
    std::thread delivery([&] {
        Note taken = 0;
        for (int wait = 0; wait < manyWaits;) {
            wait = begun.load(std::memory_order_acquire);
            if (shared->handOver.takeIfWaiting()) {
                taken = shared->hostsNote;
                shared->handOver.endHandOver();
            } else if (wait > taken) {
                EXPECT_EQ(wait, notes[static_cast<std::size_t>(wait)]);
            }
        }
    });
    for (int wait = 1; wait <= manyWaits; ++wait) {
        spinUntil([&] { return shared->handOver.hostOwnsBuffer(); });
        shared->hostsNote = wait;
        shared->handOver.beginWait();
        begun.store(wait, std::memory_order_release);
        notes[static_cast<std::size_t>(wait)] = wait;
        shared->handOver.endWait();
    }
    delivery.join();
}

}  // namespace
