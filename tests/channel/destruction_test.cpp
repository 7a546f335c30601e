// SPDX-License-Identifier: MIT
// What destroying a channel gives back, what it keeps, and in which order.
#include <thread>

#include "tests/support/one_channel.h"
#include "virtual_cameras/live/buffers.h"
#include "virtual_cameras/live/camera_list.h"
#include "virtual_cameras/live/grabber_state.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Destruction : public CGreyCamera {
protected:
    // The library's log begins before the first of them.
    static void waitUntilFramesFlow() {
        library_log::record();
        std::uint64_t sequence = 0;
        ASSERT_EQ(virtualCamerasWaitForCall("GrabberListener::frameReady", 0, 20000, &sequence), 1);
    }
    // The inside of the one that has the grey camera open.
    static const virtual_cameras::GrabberState& onlyGrabber() {
        virtual_cameras::CWorldLock world;
        return *virtual_cameras::cameraList().find(world, "1A2B")->grabbers.front();
    }
};

TEST_F(Destruction, ClosesTheDeviceWithTheGrabberAndNothingElse) {
    open(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    recordAll();
    close();
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isLive() -> false", "FrameHandlerSink::~FrameHandlerSink()",
                            "Grabber::~Grabber()"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(alive().listeners, 0U);
}

TEST_F(Destruction, ReleasesTheSinkBeforeTheGrabber) {
    // Refused by the grabber, the sink has its channel as its one holder.
    refuseCall("Grabber::setSinkType");
    open();
    recordAll();
    close();
    EXPECT_THAT(
        library_log::operations(),
        ElementsAre("Grabber::isLive", "FrameHandlerSink::~FrameHandlerSink", "Grabber::~Grabber"));
}

// Notes how many grabbers there are when its last handle goes.
class CLastBuffer : public DShowLib::MemBuffer {
public:
    explicit CLastBuffer(std::uint32_t& grabbers)
        : MemBuffer(new Implementation(9, 32)), m_grabbers(grabbers) {}
    ~CLastBuffer() { m_grabbers = alive().grabbers; }

private:
    std::uint32_t& m_grabbers;
};

TEST_F(Destruction, DropsTheHeldBufferBeforeTheGrabber) {
    std::uint32_t grabbers = 77;
    openLive();
    EXPECT_EQ(waitWhile([&] {
                  const virtual_cameras::GrabberState& grabber = onlyGrabber();
                  grabber.listeners.front().listener->frameReady(
                      *grabber.owner, DShowLib::smart_ptr<CLastBuffer>(new CLastBuffer(grabbers)),
                      1);
              }),
              done());
    EXPECT_EQ(grabbers, 77U);
    close();
    EXPECT_EQ(grabbers, 1U);
}

TEST_F(Destruction, GivesSinksAndBuffersBack) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    close();
    EXPECT_EQ(alive().sinks, 0U);
    EXPECT_EQ(alive().buffers, 0U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(Destruction, KeepsTheEventOpen) {
    const std::int64_t before = win32::openEvents();
    open();
    recordAll();
    close();
    EXPECT_THAT(win32Calls({"CloseHandle"}), IsEmpty());
    EXPECT_EQ(win32::openEvents(), before + 1);
}

TEST_F(Destruction, KeepsTheSettingsAndTheirInterfaces) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const std::uint32_t before = alive().interfaces;
    open();
    EXPECT_EQ(alive().interfaces, before + 3);
    close();
    EXPECT_EQ(alive().interfaces, before + 3);
}

TEST_F(Destruction, StopsLiveVideoFirst) {
    openLive();
    recordAll();
    close();
    EXPECT_THAT(library_log::lines({"Grabber::"}),
                ElementsAre("Grabber::isLive() -> true", "Grabber::stopLive() -> true",
                            "Grabber::~Grabber()"));
    EXPECT_EQ(alive().liveDevices, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfARunningCamera) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    openLive();
    waitUntilFramesFlow();
    close();
    const auto calls = library_log::operations();
    const auto stopped = std::find(calls.begin(), calls.end(), "Grabber::stopLive");
    ASSERT_NE(stopped, calls.end());
    EXPECT_EQ(std::find(stopped, calls.end(), "GrabberListener::frameReady"), calls.end());
}

TEST_F(Destruction, SurvivesALibraryThatThrowsATextMeanwhile) {
    open();
    throwFromCall("Grabber::isLive", "gone");
    EXPECT_NO_THROW(close());
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfACameraThatHidesThatItIsLive) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    openLive();
    waitUntilFramesFlow();
    refuseCall("Grabber::isLive");
    close();
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().liveDevices, 0U);
}

TEST_F(Destruction, MeetsNoDeliveryOfACameraThatIsPulledOutMeanwhile) {
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_FAST);
    for (int i = 0; i < 20; ++i) {
        openLive();
        std::thread puller([] { virtualCamerasUnplug("1A2B"); });
        close();
        puller.join();
        EXPECT_EQ(alive().grabbers, 0U);
        EXPECT_EQ(virtualCamerasPlug("1A2B"), 1);
    }
}

}  // namespace
