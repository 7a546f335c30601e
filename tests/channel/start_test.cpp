// SPDX-License-Identifier: MIT
// Starting live video.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* noDevice = "No valid video capture device selected.";

class Start : public CGreyCamera {};

TEST_F(Start, CallsTheLibraryInItsFixedOrder) {
    open();
    recordAll();
    EXPECT_EQ(start(), accepted());
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false",
                            "Grabber::startLive(false) -> true", "Grabber::getAcqSizeMaxX() -> 8",
                            "Grabber::getAcqSizeMaxY() -> 4"));
}

TEST_F(Start, SurroundsTheStartByComOnItsThread) {
    open();
    recordAll();
    EXPECT_EQ(comChange(0, [&] { EXPECT_EQ(start(), accepted()); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)", "CoUninitialize()"));
}

TEST_F(Start, KeepsTheSecondComOfAThreadOnPurpose) {
    open();
    recordAll();
    EXPECT_EQ(comChange(1, [&] { EXPECT_EQ(start(), accepted()); }), 1);
}

TEST_F(Start, DoesNotStopComThatItCouldNotStart) {
    open();
    win32::reset();
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    EXPECT_EQ(comChange(0, [&] { EXPECT_EQ(start(), accepted()); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)"));
    EXPECT_EQ(win32::unbalancedComStops(), 1U) << "the one of the load";
}

TEST_F(Start, TakesTheSizeAgain) {
    open(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    EXPECT_EQ(channel().width(), 16);
    EXPECT_EQ(set("videoformat", "Y800 (8x4)"), accepted());
    EXPECT_EQ(channel().width(), 16);
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(channel().width(), 8);
    EXPECT_EQ(channel().height(), 4);
}

TEST_F(Start, FailsWithoutATextWhileLive) {
    openLive();
    recordAll();
    EXPECT_EQ(start(), refused());
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> true"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Start, FailsWithoutADevice) {
    open();
    unplug();
    recordAll();
    EXPECT_EQ(start(), refused(noDevice));
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(channel().StartAcquisition(nullptr), 1);
}

TEST_F(Start, GivesTheLastErrorOfAFailure) {
    open(rigs::camera("SIM", "1", "\"Y800 (8x4)\", \"Y800 (16x2)\""));
    EXPECT_EQ(set("videoformat", "Y800 (8x4)"), accepted());
    refuseCall("Grabber::startLive", 1, 1, "The cable is loose.");
    recordAll();
    EXPECT_EQ(start(), refused("The cable is loose."));
    EXPECT_EQ(channel().width(), 16) << "sizes stay as they were";
    EXPECT_EQ(channel().height(), 2);
    EXPECT_THAT(library_log::operations({"Grabber::"}),
                ElementsAre("Grabber::isDevValid", "Grabber::isLive", "Grabber::startLive",
                            "Grabber::getLastError"));
    EXPECT_EQ(comCalls().front(), "CoInitializeEx(null, 0)");
    EXPECT_EQ(alive().items, 0U);
    EXPECT_EQ(start(), accepted());
}

TEST_F(Start, CutsTheLastErrorTo254Characters) {
    open();
    const std::string longText(400, 'e');
    refuseCall("Grabber::startLive", 1, 0, longText.c_str());
    EXPECT_EQ(start(), refused(std::string(254, 'e')));
    EXPECT_EQ(channel().StartAcquisition(nullptr), 1);
}

TEST_F(Start, ForgetsAFrameThatIsReadyAndUnlocksItEvenWhenItFails) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(lockedBuffers(), 1);
    recordAll();
    EXPECT_EQ(start(), refused());
    EXPECT_EQ(library_log::operations().front(), "MemBuffer::unlock");
    EXPECT_EQ(lockedBuffers(), 0);
    expectNoFrame();
}

TEST_F(Start, ForgetsAFrameThatIsReadyWithoutADeviceToo) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    unplug();
    EXPECT_EQ(start(), refused(noDevice));
    EXPECT_EQ(lockedBuffers(), 0);
    expectNoFrame();
}

TEST_F(Start, UnlocksTheHeldBufferBeforeItLooksForTheDevice) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(stop(), accepted());
    unplug();
    recordAll();
    EXPECT_EQ(channel().StartAcquisition(nullptr), 1);
    EXPECT_THAT(library_log::operations(), ElementsAre("MemBuffer::unlock", "Grabber::isDevValid"));
}

TEST_F(Start, LetsAThrownTextPassAndStopsCom) {
    open();
    throwFromCall("Grabber::startLive", "no");
    win32::reset();
    EXPECT_EQ(comChange(0, [&] { EXPECT_THROW(channel().StartAcquisition(nullptr), char*); }), 0);
}

}  // namespace
