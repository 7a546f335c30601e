// SPDX-License-Identifier: MIT
// The steps of the hand-over, one by one, and between two threads.
#include "acquisition/hand_over.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>

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

// What the hand-over protects: plain memory, written by both threads in turn.
struct Frame {
    int number = 0;
    int copyOfNumber = 0;
    int readings = 0;  // written by the host thread
};

// Delivers numbered frames until told to stop.
void deliver(CHandOver& handOver, Frame& frame, const std::atomic<bool>& stop) {
    for (int number = 1; !stop.load(std::memory_order_relaxed); ++number) {
        if (handOver.takeIfWaiting()) {
            frame.number = number;
            std::this_thread::yield();
            frame.copyOfNumber = number;
            handOver.endHandOver();
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
    CHandOver handOver;
    Frame frame;
    std::atomic<bool> stop{false};
    std::thread delivery([&] { deliver(handOver, frame, stop); });

    int copies = 0;
    int lastNumber = 0;
    int torn = 0;
    int outOfOrder = 0;
    for (int wait = 0; copies < 500; ++wait) {
        waitForFrame(handOver, wait % 8);
        // Also after a wait in vain: a delivery may be in its last steps, or done.
        if (handOver.hostOwnsBuffer() && handOver.isReady()) {
            torn += frame.number != frame.copyOfNumber ? 1 : 0;
            outOfOrder += frame.number <= lastNumber ? 1 : 0;
            lastNumber = frame.number;
            ++frame.readings;
            handOver.clearReady();
            ++copies;
        }
    }
    stop.store(true, std::memory_order_relaxed);
    delivery.join();
    EXPECT_EQ(0, torn);
    EXPECT_EQ(0, outOfOrder);
    EXPECT_EQ(500, frame.readings);
}

}  // namespace
