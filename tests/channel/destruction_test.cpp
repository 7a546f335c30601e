// SPDX-License-Identifier: MIT
// What destroying a channel gives back, what it keeps, and in which order.
#include <thread>

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Destruction : public CChannelTest {};

TEST_F(Destruction, ClosesTheDeviceWithTheGrabberAndNothingElse) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    CVideoChannel& channel = makeChannel();
    recordAll();
    closeChannel(channel);
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isLive() -> false", "FrameHandlerSink::~FrameHandlerSink()",
                            "Grabber::~Grabber()"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(alive().listeners, 0U);
}

TEST_F(Destruction, ReleasesTheSinkBeforeTheGrabber) {
    loadRig(rigs::grey());
    // Refused by the grabber, the sink has its channel as its one holder.
    virtualCamerasFailCall("Grabber::setSinkType", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    CVideoChannel& channel = makeChannel();
    recordAll();
    closeChannel(channel);
    EXPECT_THAT(
        library_log::operations(),
        ElementsAre("Grabber::isLive", "FrameHandlerSink::~FrameHandlerSink", "Grabber::~Grabber"));
}

TEST_F(Destruction, GivesSinksAndBuffersBack) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    CHostText text;
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    closeChannel(channel);
    EXPECT_EQ(alive().sinks, 0U);
    EXPECT_EQ(alive().buffers, 0U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(Destruction, KeepsTheEventOpen) {
    loadRig(rigs::grey());
    const std::int64_t before = win32::openEvents();
    CVideoChannel& channel = makeChannel();
    recordAll();
    closeChannel(channel);
    EXPECT_THAT(win32Calls({"CloseHandle"}), IsEmpty());
    EXPECT_EQ(win32::openEvents(), before + 1);
}

TEST_F(Destruction, KeepsTheSettingsAndTheirInterfaces) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const std::uint32_t before = alive().interfaces;
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(alive().interfaces, before + 3);
    closeChannel(channel);
    EXPECT_EQ(alive().interfaces, before + 3);
}

TEST_F(Destruction, StopsLiveVideoFirst) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    CHostText text;
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    recordAll();
    closeChannel(channel);
    EXPECT_THAT(library_log::lines({"Grabber::"}),
                ElementsAre("Grabber::isLive() -> true", "Grabber::stopLive() -> true",
                            "Grabber::~Grabber()"));
    EXPECT_EQ(alive().liveDevices, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfARunningCamera) {
    loadRig(rigs::grey());
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    CVideoChannel& channel = makeChannel();
    CHostText text;
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    library_log::record();
    std::uint64_t sequence = 0;
    ASSERT_EQ(virtualCamerasWaitForCall("GrabberListener::frameReady", 0, 20000, &sequence), 1);
    closeChannel(channel);
    const auto calls = library_log::operations();
    const auto stopped = std::find(calls.begin(), calls.end(), "Grabber::stopLive");
    ASSERT_NE(stopped, calls.end());
    EXPECT_EQ(std::find(stopped, calls.end(), "GrabberListener::frameReady"), calls.end());
}

TEST_F(Destruction, SurvivesALibraryThatThrowsATextMeanwhile) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    virtualCamerasFailCall("Grabber::isLive", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "gone");
    EXPECT_NO_THROW(closeChannel(channel));
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfACameraThatHidesThatItIsLive) {
    loadRig(rigs::grey());
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    CVideoChannel& channel = makeChannel();
    start(channel);
    library_log::record();
    std::uint64_t sequence = 0;
    ASSERT_EQ(virtualCamerasWaitForCall("GrabberListener::frameReady", 0, 20000, &sequence), 1);
    virtualCamerasFailCall("Grabber::isLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    closeChannel(channel);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().liveDevices, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfACameraThatIsPulledOutMeanwhile) {
    loadRig(rigs::grey());
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    for (int i = 0; i < 20; ++i) {
        CVideoChannel& channel = makeChannel();
        start(channel);
        std::thread puller([] { virtualCamerasUnplug("1A2B"); });
        closeChannel(channel);
        puller.join();
        EXPECT_EQ(alive().grabbers, 0U);
        virtualCamerasPlug("1A2B");
    }
}

}  // namespace
