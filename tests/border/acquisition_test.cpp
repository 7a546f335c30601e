// SPDX-License-Identifier: MIT
// Start, wait, stop and device loss, with what the adapter tells a debugger.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/border/support/border_test.h"
#include "tests/border/support/debugger_output.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* noDevice = "No valid video capture device selected.";
constexpr const char* disconnected = "The video capture device is disconnected.";

class Acquisition : public CBorderTest {
protected:
    // Frames come until the host has waited for one.
    void expectAFrame(const CHostChannel& camera) const {
        const CFramePump pump(control(), greySerial);
        EXPECT_TRUE(camera.waitForFrame());
    }
};

TEST_F(Acquisition, AWaitWithoutFramesTimesOutWithoutFailing) {
    const CHostChannel camera = liveChannel(0);
    EXPECT_EQ(camera.wait(), noFrame());
    EXPECT_EQ(camera.stop(), accepted());
}

TEST_F(Acquisition, ASecondStartFailsWithoutAText) {
    const CHostChannel camera = liveChannel(0);
    EXPECT_EQ(camera.start(), refused());
    EXPECT_EQ(camera.stop(), accepted());
    EXPECT_EQ(camera.stop(), accepted());
    EXPECT_EQ(camera.start(), accepted());
}

TEST_F(Acquisition, AStartThatFailsGivesTheLibrarysText) {
    const CHostChannel camera = channel(0);
    control().failNext("Grabber::startLive", VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    const Answer answer = camera.start();
    EXPECT_EQ(answer.result, 1);
    EXPECT_NE(answer.message, untouched);
    EXPECT_EQ(camera.start(), accepted());
}

TEST_F(Acquisition, AnUnpluggedCameraAnswersThatItIsGone) {
    const CHostChannel camera = liveChannel(0);
    ASSERT_EQ(control().unplug(greySerial), 1);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    EXPECT_EQ(camera.start(), refused(noDevice));
    EXPECT_EQ(camera.stop(), refused(noDevice));
    ImageInfo image{};
    EXPECT_EQ(camera.imageInfo(&image), deviceLost(noDevice));
    EXPECT_EQ(image.width, 0);
}

TEST_F(Acquisition, EveryWaitForALostCameraTellsTheDebugger) {
    const CHostChannel camera = liveChannel(0);
    CDebuggerOutput output;
    control().unplug(greySerial);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    EXPECT_THAT(output.take(), ElementsAre("Device lost!\n"));
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    EXPECT_THAT(output.take(), ElementsAre("Device lost!\n"));
}

TEST_F(Acquisition, ACameraPluggedInAgainIsFoundAndLive) {
    const CHostChannel camera = liveChannel(0);
    control().unplug(greySerial);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    control().plug(greySerial);
    {
        CDebuggerOutput output;
        EXPECT_EQ(camera.wait(), noFrame());
        EXPECT_THAT(output.take(), ElementsAre("Device lost!\n", "Device restored!\n"));
        EXPECT_EQ(camera.start(), refused());  // live already
    }
    expectAFrame(camera);
    CHostMemory memory(96 * 64);
    EXPECT_EQ(camera.copy(memory), done());
    EXPECT_FALSE(memory.isUntouched());
}

TEST_F(Acquisition, ALostCameraIsNotReplacedByAnother) {
    const CHostChannel camera = channel(1);
    channel(0).close();
    ASSERT_EQ(camera.start(), accepted());
    control().unplug(colourSerial);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    EXPECT_EQ(control().unplug("no such camera"), 0);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
}

TEST_F(Acquisition, TriggerModeIsSetAgainAfterALoss) {
    const CHostChannel camera = channel(0);
    CameraParameterBlock block{};
    block.exposure = 0.25;
    block.triggerEnable = 1;
    ASSERT_EQ(camera.parameters(block), accepted());
    ASSERT_EQ(camera.start(), accepted());
    control().unplug(greySerial);
    EXPECT_EQ(camera.wait(), deviceLost(disconnected));
    control().plug(greySerial);
    control().recordCalls(1);
    EXPECT_EQ(camera.wait(), noFrame());
    EXPECT_EQ(control().countOf("IVCDSwitchProperty::setSwitch"), 1U);
    EXPECT_EQ(control().countOf("Grabber::startLive"), 1U);
    EXPECT_EQ(camera.get("trigger enable switch"), accepted("true"));
}

TEST_F(Acquisition, AFrameNobodyWaitsForIsToldAndDropped) {
    const CHostChannel camera = liveChannel(0);
    CDebuggerOutput output;
    EXPECT_EQ(control().deliverFrame(greySerial), 1);
    EXPECT_THAT(output.take(), ElementsAre("FrameReady:\n"));
    EXPECT_EQ(camera.wait(), noFrame());
    EXPECT_THAT(output.take(), IsEmpty());
    CHostMemory memory(96 * 64);
    EXPECT_EQ(camera.copy(memory), noFrame());
}

TEST_F(Acquisition, AFrameThatIsWaitedForIsToldTwiceOnAnotherThread) {
    const CHostChannel camera = liveChannel(0);
    CDebuggerOutput output;
    expectAFrame(camera);
    std::uint32_t taken = 0;
    std::string before;
    for (const DebuggerText& entry : output.takeAll()) {
        EXPECT_NE(entry.threadId, ::GetCurrentThreadId());
        if (entry.text == "FrameReady: ok\n") {
            ++taken;
            EXPECT_EQ(before, "FrameReady:\n");
        } else {
            EXPECT_EQ(entry.text, "FrameReady:\n");
        }
        before = entry.text;
    }
    EXPECT_EQ(taken, 1U);
}

TEST_F(Acquisition, ListingTheCamerasTellsOneHeaderEach) {
    CDebuggerOutput output;
    channel(0);
    // The grey camera offers five interfaces, the others none.
    EXPECT_THAT(output.take(), ElementsAre("\n", "\n", "\n", "\n", "\n", "\n\nAll Properties:\n",
                                           "\n\nAll Properties:\n", "\n\nAll Properties:\n",
                                           "\n\nAll Properties:\n"));
    channel(1);
    EXPECT_THAT(output.take(), IsEmpty());
}

TEST_F(Acquisition, StopReleasesTheFrameThatWasWaitedFor) {
    const CHostChannel camera = liveChannel(0);
    expectAFrame(camera);
    EXPECT_EQ(control().lockedBuffers(greySerial), 1);
    EXPECT_EQ(camera.stop(), accepted());
    EXPECT_EQ(control().lockedBuffers(greySerial), 0);
    EXPECT_EQ(control().misuses(), 0U) << control().lastMisuse();
}

TEST_F(Acquisition, CopyingReleasesTheFrame) {
    const CHostChannel camera = liveChannel(0);
    expectAFrame(camera);
    CHostMemory memory(96 * 64);
    EXPECT_EQ(camera.copy(memory), done());
    EXPECT_EQ(control().lockedBuffers(greySerial), 0);
}

}  // namespace
