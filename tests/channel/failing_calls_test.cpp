// SPDX-License-Identifier: MIT
// What the capture library's failures leave behind: live video, sinks, locks, cameras.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto denied = static_cast<std::int32_t>(0x80070005);

class FailingCalls : public CChannelTest {
protected:
    static void throwText(const char* operation, std::uint32_t nth = 1) {
        virtualCamerasFailCall(operation, nth, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "broken");
    }
    static void failWithCode(const char* operation) {
        virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_CODE, denied, "");
    }
    static void answerFalse(const char* operation) {
        virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    }
    static CameraParameterBlock triggerOn() {
        CameraParameterBlock block{};
        block.triggerEnable = 1;
        return block;
    }
    static std::int32_t locks(const char* camera) {
        std::int32_t sum = 0;
        for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
            sum += virtualCamerasBufferLocks(camera, buffer);
        }
        return sum;
    }
    // Live, with one frame handed over.
    CVideoChannel& withFrame(const std::string& rig, const char* camera) {
        loadRig(rig);
        CVideoChannel& channel = makeChannel();
        start(channel);
        EXPECT_EQ(waitForDelivery(channel, camera).status, 0U);
        return channel;
    }
};

TEST_F(FailingCalls, ATriggerThatIsRefusedAtARestoreLeavesTheCameraLive) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    const CameraParameterBlock block = triggerOn();
    channel.SetCameraParameters(nullptr, &block);
    start(channel);
    virtualCamerasUnplug("1A2B");
    virtualCamerasPlug("1A2B");
    const std::int32_t balance = win32::comBalance();
    recordAll();
    failWithCode("IVCDSwitchProperty::setSwitch");
    try {
        waitFrame(channel);
        FAIL() << "nothing was thrown";
    } catch (std::int32_t code) {
        EXPECT_EQ(code, denied);
    }
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_EQ(alive().liveDevices, 1U);
    recordAll();
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_THAT(win32::debuggerTexts(), IsEmpty());
}

TEST_F(FailingCalls, AFrameRateThatThrowsLeavesTheCameraLive) {
    loadRig(rigs::grey("framerates = [60.0, 30.0]\n"));
    CVideoChannel& channel = makeChannel();
    start(channel);
    recordAll();
    throwText("Grabber::setFPS");
    EXPECT_EQ(setProperty(channel, "framerate", "30"), "Unknown property \"framerate\"");
    EXPECT_THAT(
        library_log::operations({"Grabber::stopLive", "Grabber::setFPS", "Grabber::startLive"}),
        ElementsAre("Grabber::stopLive", "Grabber::setFPS", "Grabber::startLive"));
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(FailingCalls, ATriggerOfTheBlockThatThrowsLeavesTheCameraLive) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    start(channel);
    failWithCode("IVCDSwitchProperty::setSwitch");
    const CameraParameterBlock block = triggerOn();
    EXPECT_THROW(channel.SetCameraParameters(nullptr, &block), std::int32_t);
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(FailingCalls, ACameraThatThrowsInTheSearchIsClosedAgain) {
    loadRig(rigs::camera("SIM B", "B2", "\"Y800 (8x4)\"") + rigs::grey());
    CVideoChannel& channel = makeChannel(1);
    start(channel);
    virtualCamerasUnplug("1A2B");
    const std::int32_t balance = win32::comBalance();
    recordAll();
    throwText("VideoCaptureDeviceItem::getSerialNumber");
    EXPECT_THROW(waitFrame(channel), char*);
    EXPECT_EQ(library_log::operations().back(), "Grabber::closeDev");
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(win32::comBalance(), balance);
    const WaitOutcome outcome = waitFrame(channel);
    EXPECT_EQ(outcome.status, 8192U) << "another camera is not taken for the lost one";
}

TEST_F(FailingCalls, ASinkThatThrowsLeavesTheOneBeforeIt) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    throwText("FrameHandlerSink::setSnapMode");
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "Unknown property \"pixelformat\"");
    EXPECT_EQ(alive().sinks, 1U);
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    CHostMemory frame(8 * 4 * 3);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_FALSE(frame.isUntouched(0, 8 * 4)) << "the grey frame of the sink in use";
    EXPECT_TRUE(frame.isUntouched(8 * 4, 8 * 4 * 2));
}

TEST_F(FailingCalls, ASinkOfLargerPixelsThanTheHostWasToldIsCutToItsMemory) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    throwText("FrameHandlerSink::create");
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "Unknown property \"pixelformat\"");
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(8 * 4 * 3);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_FALSE(frame.isUntouched(8 * 4 * 3 - 4, 4));
}

TEST_F(FailingCalls, ARefusedSinkWhileLiveLeavesTheWayOfRawFrames) {
    // The flag of the setting is up, so that a refused set asks for a sink while live.
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "pixelformat", "raw8"), "");
    start(channel);
    throwText("FrameHandlerSink::setSnapMode");
    EXPECT_NE(setProperty(channel, "pixelformat", "raw8"), "");
    EXPECT_EQ(alive().sinks, 1U);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory frame(8 * 4);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_FALSE(frame.isUntouched(8 * 4 - 1, 1)) << "the last row is filled from 32-bit pixels";
}

TEST_F(FailingCalls, ASinkThatDoesNotTellItsOutputGivesNoFrame) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "");
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    answerFalse("FrameHandlerSink::getOutputFrameType");
    CHostMemory frame(8 * 4 * 3);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_EQ(locks("3C4D"), 0);
    EXPECT_EQ(copyFrame(channel, frame), 4096U) << "the frame is used up";
}

TEST_F(FailingCalls, AModelNameThatIsOnlyTracedFailsNoSink) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    recordAll();
    throwText("VideoCaptureDeviceItem::getFriendlyName_");
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "");
    EXPECT_EQ(library_log::count("Grabber::setSinkType"), 1U);
}

TEST_F(FailingCalls, AnUnlockThatThrowsInAStopLeavesNoOtherBufferLocked) {
    CVideoChannel& channel = withFrame(rigs::grey(), "1A2B");
    ASSERT_EQ(locks("1A2B"), 1);
    const std::int32_t balance = win32::comBalance();
    throwText("MemBuffer::unlock");
    EXPECT_THROW(channel.StopAcquisition(nullptr), char*);
    EXPECT_EQ(locks("1A2B"), 0);
    EXPECT_EQ(win32::comBalance(), balance);
}

TEST_F(FailingCalls, AnUnlockThatThrowsInACopyIsMadeUpForByTheNextStart) {
    CVideoChannel& channel = withFrame(rigs::grey(), "1A2B");
    throwText("MemBuffer::unlock");
    CHostMemory frame(8 * 4);
    EXPECT_THROW(copyFrame(channel, frame), char*);
    EXPECT_EQ(locks("1A2B"), 1);
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1) << "live already";
    EXPECT_EQ(locks("1A2B"), 0);
}

TEST_F(FailingCalls, ADeviceThatComesBackLargerStaysWithinTheHostsMemory) {
    loadRig(rigs::color());
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "pixelformat", "rgb24"), "");
    start(channel);
    EXPECT_EQ(channel.width(), 8);
    loadRig(rigs::camera("SIM Color 23", "3C4D", "\"RGB24 (64x48)\""));
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    ImageInfo image{};
    channel.GetImageInfo(nullptr, &image, nullptr);
    ASSERT_EQ(image.width, 64);
    CHostMemory small(8 * 4 * 3);
    EXPECT_EQ(copyFrame(channel, small), 0U);
    EXPECT_FALSE(small.isUntouched(8 * 4 * 3 - 4, 4));

    stop(channel);
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "3C4D").status, 0U);
    CHostMemory large(64 * 48 * 3);
    EXPECT_EQ(copyFrame(channel, large), 0U);
    EXPECT_FALSE(large.isUntouched(64 * 48 * 3 - 4, 4)) << "the next start knows the size";
}

TEST_F(FailingCalls, AKeyThatIsTheMessageBufferIsQuotedAsItWas) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    for (const bool isSet : {false, true}) {
        CHostText text;
        char* buffer = text;
        std::snprintf(buffer, 256, "No Such Key");
        CHostText value;
        EXPECT_EQ(isSet ? channel.SetPropertyValue(buffer, buffer, "1")
                        : channel.GetPropertyValue(buffer, buffer, value),
                  1);
        EXPECT_EQ(text.text(), "Unknown property \"No Such Key\"");
    }
    CHostText command;
    std::snprintf(command, 256, "No Such Command");
    EXPECT_EQ(channel.ExecuteCommand(command, command), 1);
    EXPECT_EQ(command.text(), "Unknown command \"No Such Command\"");
}

}  // namespace
