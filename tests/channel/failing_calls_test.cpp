// SPDX-License-Identifier: MIT
// What the capture library's failures leave behind: live video, sinks, locks, cameras.
#include <cstdio>
#include <new>

#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FailingCalls : public CGreyCamera {
protected:
    // The library's own exception, at one call.
    static void breakCall(const char* operation) { throwFromCall(operation, "broken"); }
    // Live, with one frame handed over.
    void openWithFrame() {
        openLive();
        ASSERT_EQ(waitForDelivery(), done());
    }
};

TEST_F(FailingCalls, ATriggerThatIsRefusedAtARestoreLeavesTheCameraLive) {
    open(rigs::grey(rigs::trigger));
    EXPECT_EQ(parameters(triggerOn()), accepted());
    EXPECT_EQ(start(), accepted());
    unplug();
    plug();
    const std::int32_t balance = win32::comBalance();
    recordAll();
    failCall("IVCDSwitchProperty::setSwitch");
    EXPECT_EQ(thrownCode([this] { wait(); }), -2147024891);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_EQ(alive().liveDevices, 1U);
    recordAll();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_THAT(win32::debuggerTexts(), IsEmpty());
}

TEST_F(FailingCalls, AFrameRateThatThrowsLeavesTheCameraLive) {
    openLive(rigs::grey("framerates = [60.0, 30.0]\n"));
    recordAll();
    breakCall("Grabber::setFPS");
    EXPECT_EQ(set("framerate", "30"), refused("Unknown property \"framerate\""));
    EXPECT_THAT(
        library_log::operations({"Grabber::stopLive", "Grabber::setFPS", "Grabber::startLive"}),
        ElementsAre("Grabber::stopLive", "Grabber::setFPS", "Grabber::startLive"));
    EXPECT_THAT(library_log::invocations({"Grabber::startLive"}),
                ElementsAre("Grabber::startLive(false)"))
        << "the picture is not shown";
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(FailingCalls, ATriggerOfTheBlockThatThrowsLeavesTheCameraLive) {
    openLive(rigs::grey(rigs::trigger));
    failCall("IVCDSwitchProperty::setSwitch");
    EXPECT_THROW(parameters(triggerOn()), std::int32_t);
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(FailingCalls, TheFirstExceptionOfAPauseGoesOnWhereTheStartThrowsToo) {
    openLive(rigs::grey(rigs::trigger));
    failCall("IVCDSwitchProperty::setSwitch");
    breakCall("Grabber::startLive");
    EXPECT_EQ(thrownCode([this] { parameters(triggerOn()); }), -2147024891);
}

TEST_F(FailingCalls, TheFirstExceptionOfARestoreGoesOnWhereTheStartThrowsToo) {
    open(rigs::grey(rigs::trigger));
    EXPECT_EQ(parameters(triggerOn()), accepted());
    EXPECT_EQ(start(), accepted());
    unplug();
    plug();
    recordAll();
    failCall("IVCDSwitchProperty::setSwitch");
    breakCall("Grabber::startLive");
    EXPECT_EQ(thrownCode([this] { wait(); }), -2147024891);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
}

TEST_F(FailingCalls, ACameraThatThrowsInTheSearchIsClosedAgain) {
    openLive(rigs::camera("SIM B", "B2", "\"Y800 (8x4)\"") + rigs::grey(), 1);
    unplug();
    const std::int32_t balance = win32::comBalance();
    recordAll();
    breakCall("VideoCaptureDeviceItem::getSerialNumber");
    EXPECT_THROW(wait(), char*);
    EXPECT_EQ(library_log::operations().back(), "Grabber::closeDev");
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_EQ(wait().word, 0x2000U) << "another camera is not taken for the lost one";
}

TEST_F(FailingCalls, ACameraThatThrowsWhileItIsOpenedInTheSearchIsClosedAgain) {
    // Whether it was opened before the library threw is not known: the one before it, which
    // does not tell its number, stands for it here.
    openLive(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\"") + rigs::grey(), 1);
    unplug();
    plug();
    const std::int32_t balance = win32::comBalance();
    recordAll();
    throwFromCall("Grabber::openDev", "broken", 2);
    EXPECT_THROW(wait(), char*);
    EXPECT_EQ(library_log::operations().back(), "Grabber::closeDev");
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_EQ(waitForDelivery(), done()) << "the next wait finds it";
}

TEST_F(FailingCalls, ACameraThatThrowsBeforeItIsAskedForItsNumberIsClosedAgain) {
    openLive();
    unplug();
    plug();
    recordAll();
    breakCall("Grabber::getDev");
    EXPECT_THROW(wait(), char*);
    EXPECT_EQ(library_log::operations().back(), "Grabber::closeDev");
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(waitInVain(), noFrame()) << "the next wait finds it";
}

TEST_F(FailingCalls, ACameraThatThrowsWhileItIsClosedInTheSearchIsClosedAgain) {
    openLive(rigs::camera("SIM B", "B2", "\"Y800 (8x4)\"") + rigs::grey(), 1);
    unplug();
    const std::int32_t balance = win32::comBalance();
    recordAll();
    breakCall("Grabber::closeDev");
    EXPECT_THROW(wait(), char*);
    EXPECT_EQ(library_log::operations().back(), "Grabber::closeDev");
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_EQ(wait().word, 0x2000U) << "another camera is not taken for the lost one";
}

TEST_F(FailingCalls, AListThatFindsNoMemoryToBeCopiedIsAnExceptionAndNotTheEnd) {
    startLibrary();
    DShowLib::FrameHandlerSink::tCreateData data;
    data.bufferCount = 5;
    data.frameTypes.push_back({});
    win32::injectResults("CoTaskMemAlloc", {0});
    EXPECT_THROW(DShowLib::FrameHandlerSink::create(data), std::bad_alloc);
    EXPECT_EQ(alive().sinks, 0U);
}

TEST_F(FailingCalls, ASinkThatThrowsLeavesTheOneBeforeIt) {
    open();
    breakCall("FrameHandlerSink::setSnapMode");
    EXPECT_EQ(set("pixelformat", "rgb24"), refused("Unknown property \"pixelformat\""));
    EXPECT_EQ(alive().sinks, 1U);
    EXPECT_EQ(start(), accepted());
    const CHostMemory& frame = receiveFrame(8 * 4 * 3);
    EXPECT_FALSE(frame.isUntouched(0, 8 * 4)) << "the grey frame of the sink in use";
    EXPECT_TRUE(frame.isUntouched(8 * 4, 8 * 4 * 2));
}

TEST_F(FailingCalls, ASinkOfLargerPixelsThanTheHostWasToldIsCutToItsMemory) {
    open(rigs::color());
    breakCall("FrameHandlerSink::create");
    EXPECT_EQ(set("pixelformat", "rgb24"), refused("Unknown property \"pixelformat\""));
    EXPECT_EQ(start(), accepted());
    const CHostMemory& frame = receiveFrame(8 * 4 * 3);
    EXPECT_FALSE(frame.isUntouched(8 * 4 * 3 - 4, 4));
}

TEST_F(FailingCalls, ARefusedSinkWhileLiveLeavesTheWayOfRawFrames) {
    // The flag of the setting is up, so that a refused set asks for a sink while live.
    open(rigs::color());
    EXPECT_EQ(set("pixelformat", "raw8"), accepted());
    EXPECT_EQ(start(), accepted());
    breakCall("FrameHandlerSink::setSnapMode");
    EXPECT_EQ(set("pixelformat", "raw8").result, 1);
    EXPECT_EQ(alive().sinks, 1U);
    const CHostMemory& frame = receiveFrame(8 * 4);
    EXPECT_FALSE(frame.isUntouched(8 * 4 - 1, 1)) << "the last row is filled from 32-bit pixels";
}

TEST_F(FailingCalls, ASinkThatDoesNotTellItsOutputGivesNoFrame) {
    openLiveInRgb24();
    ASSERT_EQ(waitForDelivery(), done());
    refuseCall("FrameHandlerSink::getOutputFrameType");
    CHostMemory frame(8 * 4 * 3);
    EXPECT_EQ(copy(frame), noFrame());
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_EQ(lockedBuffers("3C4D"), 0);
    EXPECT_EQ(copy(frame), noFrame()) << "the frame is used up";
}

TEST_F(FailingCalls, AModelNameThatIsOnlyTracedFailsNoSink) {
    open(rigs::color());
    recordAll();
    breakCall("VideoCaptureDeviceItem::getFriendlyName_");
    EXPECT_EQ(set("pixelformat", "rgb24"), accepted());
    EXPECT_EQ(library_log::count("Grabber::setSinkType"), 1U);
}

TEST_F(FailingCalls, AnUnlockThatThrowsInAStopLeavesNoOtherBufferLocked) {
    openWithFrame();
    ASSERT_EQ(lockedBuffers(), 1);
    const std::int32_t balance = win32::comBalance();
    breakCall("MemBuffer::unlock");
    EXPECT_THROW(stop(), char*);
    EXPECT_EQ(lockedBuffers(), 0);
    EXPECT_EQ(win32::comBalance(), balance);
}

TEST_F(FailingCalls, AnUnlockThatThrowsInACopyIsMadeUpForByTheNextStart) {
    openWithFrame();
    breakCall("MemBuffer::unlock");
    CHostMemory frame(8 * 4);
    EXPECT_THROW(copy(frame), char*);
    EXPECT_EQ(lockedBuffers(), 1);
    EXPECT_EQ(start(), refused()) << "live already";
    EXPECT_EQ(lockedBuffers(), 0);
}

TEST_F(FailingCalls, AnUnlockThatThrowsInAStartLeavesNoFrameToCopy) {
    openWithFrame();
    breakCall("MemBuffer::unlock");
    EXPECT_THROW(start(), char*);
    CHostMemory frame(8 * 4);
    EXPECT_EQ(copy(frame), noFrame());
    EXPECT_TRUE(frame.isUntouched(0, 8 * 4));
}

TEST_F(FailingCalls, AnRgb24FrameBehindAStartIsTheSinksWhateverSizeTheCameraTells) {
    openLiveInRgb24();
    EXPECT_EQ(stop(), accepted());
    refuseCall("Grabber::getAcqSizeMaxX");
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(channel().width(), 0);
    EXPECT_FALSE(receiveFrame(8 * 4 * 3).isUntouched(8 * 4 * 3 - 4, 4));
}

TEST_F(FailingCalls, ADeviceThatComesBackLargerStaysWithinTheHostsMemory) {
    openLiveInRgb24();
    EXPECT_EQ(channel().width(), 8);
    loadRig(rigs::camera("SIM Color 23", "3C4D", "\"RGB24 (64x48)\""));
    ASSERT_EQ(waitForDelivery(), done());
    ImageInfo image{};
    EXPECT_EQ(imageInfo(&image), done());
    ASSERT_EQ(image.width, 64);
    CHostMemory small(8 * 4 * 3);
    EXPECT_EQ(copy(small), done());
    EXPECT_FALSE(small.isUntouched(8 * 4 * 3 - 4, 4));

    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(start(), accepted());
    const CHostMemory& large = receiveFrame(64 * 48 * 3);
    EXPECT_FALSE(large.isUntouched(64 * 48 * 3 - 4, 4)) << "the next start knows the size";
}

TEST_F(FailingCalls, AKeyThatIsTheMessageBufferIsQuotedAsItWas) {
    open();
    for (const bool isSet : {false, true}) {
        CHostText text;
        char* buffer = text;
        std::snprintf(buffer, 256, "No Such Key");
        CHostText value;
        EXPECT_EQ(isSet ? channel().SetPropertyValue(buffer, buffer, "1")
                        : channel().GetPropertyValue(buffer, buffer, value),
                  1);
        EXPECT_EQ(text.text(), "Unknown property \"No Such Key\"");
    }
    CHostText command;
    std::snprintf(command, 256, "No Such Command");
    EXPECT_EQ(channel().ExecuteCommand(command, command), 1);
    EXPECT_EQ(command.text(), "Unknown command \"No Such Command\"");
}

TEST_F(FailingCalls, AKeyThatARefusalWasWrittenOverIsQuotedAsItWas) {
    open();
    CHostText text;
    char* buffer = text;
    std::snprintf(buffer, 256, "PixelFormat ");
    breakCall("FrameHandlerSink::create");
    EXPECT_EQ(channel().SetPropertyValue(buffer, buffer, "no such format"), 1);
    EXPECT_EQ(text.text(), "Unknown property \"PixelFormat \"");
}

}  // namespace
