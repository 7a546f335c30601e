// SPDX-License-Identifier: MIT
// Waiting for a frame.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Wait : public CGreyCamera {};

TEST_F(Wait, EndsWithAFrame) {
    openLive();
    recordAll();
    EXPECT_EQ(waitForDelivery(), done());
    EXPECT_THAT(library_log::operations({"Grabber::"}), ElementsAre("Grabber::isDevValid"));
    EXPECT_THAT(comCalls(), IsEmpty());
}

TEST_F(Wait, WaitsOneSecondOnItsEvent) {
    openLive();
    win32::reset();
    waitInVain();
    const auto waits = win32::callsOf("WaitForSingleObject");
    ASSERT_EQ(waits.size(), 1U);
    EXPECT_THAT(waits[0].arguments, ::testing::MatchesRegex("event [0-9]+, 1000"));
}

TEST_F(Wait, EndsWithoutAFrameAfterItsTime) {
    openLive();
    win32::reset();
    // The true wait of the subset: a whole second, and no frame.
    EXPECT_EQ(wait(), noFrame());
    EXPECT_THAT(win32Calls({"ResetEvent"}), IsEmpty()) << "a late frame is the next wait's";
}

TEST_F(Wait, LeavesTheStatusAloneForAnyOtherEnd) {
    openLive();
    for (const DWORD end : {WAIT_FAILED, WAIT_ABANDONED, DWORD{1}}) {
        win32::reset();
        win32::injectResults("WaitForSingleObject", {end});
        EXPECT_EQ(wait(), accepted());
        EXPECT_THAT(win32Calls({"ResetEvent"}), IsEmpty());
    }
}

TEST_F(Wait, EndsForTheListenerHoweverItEnds) {
    openLive();
    for (const DWORD end : {WAIT_TIMEOUT, WAIT_FAILED, WAIT_OBJECT_0}) {
        win32::injectResults("WaitForSingleObject", {end});
        wait();
        deliver();
        EXPECT_EQ(lockedBuffers(), 0) << end;
        expectNoFrame();
    }
}

TEST_F(Wait, ReturnsAtOnceWithAFrameWhoseSignalStoodAlready) {
    openLive();
    // Left signalled as by a frame that came just after a time-out.
    win32::injectResults("ResetEvent", {TRUE});
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(wait(), done());
    EXPECT_EQ(copiedFrame()[4], 0xC1);
    EXPECT_EQ(win32::callsOf("ResetEvent").size(), 2U);
}

TEST_F(Wait, ResetsTheEventAfterEachFrame) {
    openLive();
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(waitForDelivery(), done());
    }
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(win32::callsOf("ResetEvent").size(), 3U);
    EXPECT_EQ(wait(), noFrame()) << "an old signal woke the wait";
}

TEST_F(Wait, TimesOutWhileStopped) {
    open();
    EXPECT_EQ(waitInVain(), noFrame());
}

TEST_F(Wait, TakesNullForItsOutputs) {
    openLive();
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT, WAIT_OBJECT_0});
    EXPECT_EQ(channel().WaitFrame(nullptr, nullptr), 0);
    EXPECT_EQ(channel().WaitFrame(nullptr, nullptr), 0);
    unplug();
    EXPECT_EQ(channel().WaitFrame(nullptr, nullptr), 1);
}

TEST_F(Wait, GoesOnWithoutAnEvent) {
    win32::injectResults("CreateEventA", {0});
    openLive();
    EXPECT_EQ(wait(), accepted());
    EXPECT_EQ(stop(), accepted());
}

}  // namespace
