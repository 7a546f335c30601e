// SPDX-License-Identifier: MIT
// Starting live video.
#include "tests/channel/acquisition_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* noDevice = "No valid video capture device selected.";

class Start : public CAcquisitionTest {};

TEST_F(Start, CallsTheLibraryInItsFixedOrder) {
    CVideoChannel& channel = stopped();
    recordAll();
    start(channel);
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false",
                            "Grabber::startLive(false) -> true", "Grabber::getAcqSizeMaxX() -> 8",
                            "Grabber::getAcqSizeMaxY() -> 4"));
}

TEST_F(Start, SurroundsTheStartByComOnItsThread) {
    CVideoChannel& channel = stopped();
    recordAll();
    EXPECT_EQ(comChange(0, [&] { start(channel); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)", "CoUninitialize()"));
}

TEST_F(Start, KeepsTheSecondComOfAThreadOnPurpose) {
    CVideoChannel& channel = stopped();
    recordAll();
    EXPECT_EQ(comChange(1, [&] { start(channel); }), 1);
}

TEST_F(Start, DoesNotStopComThatItCouldNotStart) {
    CVideoChannel& channel = stopped();
    win32::reset();
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    EXPECT_EQ(comChange(0, [&] { start(channel); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)"));
    EXPECT_EQ(win32::unbalancedComStops(), 1U) << "the one of the load";
}

TEST_F(Start, TakesTheSizeAgain) {
    loadRig(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(channel.width(), 16);
    EXPECT_EQ(setProperty(channel, "videoformat", "Y800 (8x4)"), "");
    EXPECT_EQ(channel.width(), 16);
    start(channel);
    EXPECT_EQ(channel.width(), 8);
    EXPECT_EQ(channel.height(), 4);
}

TEST_F(Start, FailsWithoutATextWhileLive) {
    CVideoChannel& channel = live();
    recordAll();
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_TRUE(text.isUntouched());
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> true"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Start, FailsWithoutADevice) {
    CVideoChannel& channel = stopped();
    virtualCamerasUnplug("1A2B");
    recordAll();
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(text.text(), noDevice);
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(channel.StartAcquisition(nullptr), 1);
}

TEST_F(Start, GivesTheLastErrorOfAFailure) {
    loadRig(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(setProperty(channel, "videoformat", "Y800 (8x4)"), "");
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0,
                           "The cable is loose.");
    recordAll();
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(text.text(), "The cable is loose.");
    EXPECT_EQ(channel.width(), 16) << "sizes stay as they were";
    EXPECT_EQ(channel.height(), 2);
    EXPECT_THAT(library_log::operations({"Grabber::"}),
                ElementsAre("Grabber::isDevValid", "Grabber::isLive", "Grabber::startLive",
                            "Grabber::getLastError"));
    EXPECT_EQ(comCalls().front(), "CoInitializeEx(null, 0)");
    EXPECT_EQ(alive().items, 0U);
    text.refill();
    EXPECT_EQ(channel.StartAcquisition(text), 0);
    EXPECT_TRUE(text.isUntouched());
}

TEST_F(Start, CutsTheLastErrorTo254Characters) {
    CVideoChannel& channel = stopped();
    const std::string longText(400, 'e');
    virtualCamerasFailCall("Grabber::startLive", 1, 0, VIRTUAL_CAMERAS_FAIL_FALSE, 0,
                           longText.c_str());
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(text.text(), std::string(254, 'e'));
    EXPECT_EQ(channel.StartAcquisition(nullptr), 1);
}

TEST_F(Start, ForgetsAFrameThatIsReadyAndUnlocksItEvenWhenItFails) {
    CVideoChannel& channel = live();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_EQ(lockedBuffers(), 1);
    recordAll();
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(library_log::operations().front(), "MemBuffer::unlock");
    EXPECT_EQ(lockedBuffers(), 0);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
}

TEST_F(Start, UnlocksTheHeldBufferBeforeItLooksForTheDevice) {
    CVideoChannel& channel = live();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    stop(channel);
    virtualCamerasUnplug("1A2B");
    recordAll();
    EXPECT_EQ(channel.StartAcquisition(nullptr), 1);
    EXPECT_THAT(library_log::operations(), ElementsAre("MemBuffer::unlock", "Grabber::isDevValid"));
}

TEST_F(Start, LetsAThrownTextPassAndStopsCom) {
    CVideoChannel& channel = stopped();
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "no");
    win32::reset();
    EXPECT_EQ(comChange(0, [&] { EXPECT_THROW(channel.StartAcquisition(nullptr), char*); }), 0);
}

}  // namespace
