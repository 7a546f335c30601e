// SPDX-License-Identifier: MIT
// Waiting for a frame.
#include "tests/channel/acquisition_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Wait : public CAcquisitionTest {};

TEST_F(Wait, EndsWithAFrame) {
    CVideoChannel& channel = live();
    recordAll();
    const WaitOutcome outcome = waitForDelivery(channel, "1A2B");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 0U);
    EXPECT_TRUE(outcome.textUntouched);
    EXPECT_THAT(library_log::operations({"Grabber::"}), ElementsAre("Grabber::isDevValid"));
    EXPECT_THAT(comCalls(), IsEmpty());
}

TEST_F(Wait, WaitsOneSecondOnItsEvent) {
    CVideoChannel& channel = live();
    win32::reset();
    waitInVain(channel);
    const auto waits = win32::callsOf("WaitForSingleObject");
    ASSERT_EQ(waits.size(), 1U);
    EXPECT_THAT(waits[0].arguments, ::testing::MatchesRegex("event [0-9]+, 1000"));
}

TEST_F(Wait, EndsWithoutAFrameAfterItsTime) {
    CVideoChannel& channel = live();
    win32::reset();
    // The true wait of the subset: a whole second, and no frame.
    const WaitOutcome outcome = waitFrame(channel);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 4096U);
    EXPECT_TRUE(outcome.textUntouched);
    EXPECT_THAT(win32Calls({"ResetEvent"}), IsEmpty()) << "a late frame is the next wait's";
}

TEST_F(Wait, LeavesTheStatusAloneForAnyOtherEnd) {
    CVideoChannel& channel = live();
    for (const DWORD end : {WAIT_FAILED, WAIT_ABANDONED, DWORD{1}}) {
        win32::reset();
        win32::injectResults("WaitForSingleObject", {end});
        const WaitOutcome outcome = waitFrame(channel);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_FALSE(outcome.statusWritten) << end;
        EXPECT_TRUE(outcome.textUntouched);
        EXPECT_THAT(win32Calls({"ResetEvent"}), IsEmpty());
    }
}

TEST_F(Wait, EndsForTheListenerHoweverItEnds) {
    CVideoChannel& channel = live();
    CHostMemory frame(32);
    for (const DWORD end : {WAIT_TIMEOUT, WAIT_FAILED, WAIT_OBJECT_0}) {
        win32::injectResults("WaitForSingleObject", {end});
        waitFrame(channel);
        EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1);
        EXPECT_EQ(lockedBuffers(), 0) << end;
        EXPECT_EQ(copyFrame(channel, frame), 4096U);
    }
}

TEST_F(Wait, ReturnsAtOnceWithAFrameWhoseSignalStoodAlready) {
    CVideoChannel& channel = live();
    // Left signalled as by a frame that came just after a time-out.
    win32::injectResults("ResetEvent", {TRUE});
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    const WaitOutcome outcome = waitFrame(channel);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1);
    EXPECT_EQ(win32::callsOf("ResetEvent").size(), 2U);
}

TEST_F(Wait, ResetsTheEventAfterEachFrame) {
    CVideoChannel& channel = live();
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    }
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(win32::callsOf("ResetEvent").size(), 3U);
    EXPECT_EQ(waitFrame(channel).status, 4096U) << "an old signal woke the wait";
}

TEST_F(Wait, TimesOutWhileStopped) {
    CVideoChannel& channel = stopped();
    const WaitOutcome outcome = waitInVain(channel);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 4096U);
}

TEST_F(Wait, TakesNullForItsOutputs) {
    CVideoChannel& channel = live();
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT, WAIT_OBJECT_0});
    EXPECT_EQ(channel.WaitFrame(nullptr, nullptr), 0);
    EXPECT_EQ(channel.WaitFrame(nullptr, nullptr), 0);
    virtualCamerasUnplug("1A2B");
    EXPECT_EQ(channel.WaitFrame(nullptr, nullptr), 1);
}

TEST_F(Wait, GoesOnWithoutAnEvent) {
    loadRig(rigs::grey());
    const DShowLib::VideoCaptureDeviceItem item = device();
    win32::injectResults("CreateEventA", {0});
    CVideoChannel channel(item);
    start(channel);
    const WaitOutcome outcome = waitFrame(channel);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_FALSE(outcome.statusWritten);
    stop(channel);
}

}  // namespace
