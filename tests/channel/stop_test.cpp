// SPDX-License-Identifier: MIT
// Stopping live video.
#include "tests/channel/acquisition_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* noDevice = "No valid video capture device selected.";

class Stop : public CAcquisitionTest {};

TEST_F(Stop, CallsTheLibraryInItsFixedOrder) {
    CVideoChannel& channel = live();
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> true",
                            "Grabber::stopLive() -> true",
                            "FrameHandlerSink::getMemBufferCollection() -> buffers",
                            "MemBufferCollection::getBufferCount() -> 5",
                            "MemBufferCollection::operator[](0) -> buffer", "MemBuffer::unlock(0)",
                            "MemBufferCollection::getBufferCount() -> 5",
                            "MemBufferCollection::operator[](1) -> buffer", "MemBuffer::unlock(1)",
                            "MemBufferCollection::getBufferCount() -> 5",
                            "MemBufferCollection::operator[](2) -> buffer", "MemBuffer::unlock(2)",
                            "MemBufferCollection::getBufferCount() -> 5",
                            "MemBufferCollection::operator[](3) -> buffer", "MemBuffer::unlock(3)",
                            "MemBufferCollection::getBufferCount() -> 5",
                            "MemBufferCollection::operator[](4) -> buffer", "MemBuffer::unlock(4)",
                            "MemBufferCollection::getBufferCount() -> 5",
                            // The held buffer, once more.
                            "MemBuffer::unlock(0)"));
    EXPECT_EQ(lockedBuffers(), 0);
}

TEST_F(Stop, UnlocksNoHeldBufferWithoutOne) {
    CVideoChannel& channel = live();
    recordAll();
    stop(channel);
    EXPECT_EQ(library_log::count("MemBuffer::unlock"), 5U);
}

TEST_F(Stop, StartsComThenResetsTheEventThenStopsCom) {
    CVideoChannel& channel = live();
    recordAll();
    EXPECT_EQ(comChange(0, [&] { stop(channel); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)",
                                            StartsWith("ResetEvent(event "), "CoUninitialize()"));
}

TEST_F(Stop, BalancesTheSecondComOfAThreadToo) {
    CVideoChannel& channel = live();
    recordAll();
    EXPECT_EQ(comChange(1, [&] { stop(channel); }), 0);
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)", "CoInitializeEx(null, 0)",
                                        "CoUninitialize()"));
}

TEST_F(Stop, DoesNotStopComThatItCouldNotStart) {
    CVideoChannel& channel = live();
    win32::reset();
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    EXPECT_EQ(comChange(0, [&] { stop(channel); }), 0);
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)"));
}

TEST_F(Stop, DoesNotBalanceSuccessesOfAnyOtherKind) {
    CVideoChannel& channel = live();
    win32::reset();
    win32::injectResults("CoInitializeEx", {2});
    stop(channel);
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)"));
    CoUninitialize();
}

TEST_F(Stop, FailsWithoutADevice) {
    CVideoChannel& channel = stopped();
    virtualCamerasUnplug("1A2B");
    recordAll();
    CHostText text;
    EXPECT_EQ(channel.StopAcquisition(text), 1);
    EXPECT_EQ(text.text(), noDevice);
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(channel.StopAcquisition(nullptr), 1);
}

TEST_F(Stop, ChangesNothingWhenStopped) {
    CVideoChannel& channel = stopped();
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Stop, KeepsAPendingFrameWhenLiveVideoHasEndedOtherwise) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    // A change of trigger mode stops live video; this one does not start again.
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    EXPECT_EQ(channel.SetCameraParameters(nullptr, &block), 0);
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false"));
    EXPECT_EQ(lockedBuffers(), 1);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1);
}

TEST_F(Stop, ResetsASignalThatNobodyTook) {
    CVideoChannel& channel = live();
    // The wait sees a time-out although the frame has come: the event stays signalled.
    win32::injectResults("ResetEvent", {TRUE});
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    stop(channel);
    start(channel);
    const WaitOutcome outcome =
        waitWhile(channel, [&] { EXPECT_EQ(virtualCamerasDeliverFrame("1A2B"), 1); });
    EXPECT_EQ(outcome.status, 0U);
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U) << "a signal of before the stop woke the wait";
}

TEST_F(Stop, GoesOnWithoutASinkOrBuffers) {
    CVideoChannel& channel = live();
    virtualCamerasFailCall("FrameHandlerSink::getMemBufferCollection", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::operations({"MemBuffer::", "MemBufferCollection::"}), IsEmpty());

    virtualCamerasFailCall("FrameHandlerSink::create", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    EXPECT_EQ(setProperty(channel, "pixelformat", "mono8"), "");
    start(channel);
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "MemBuffer::"}), IsEmpty());
}

TEST_F(Stop, SkipsABufferThatIsNotThere) {
    CVideoChannel& channel = live();
    virtualCamerasFailCall("MemBufferCollection::operator[]", 2, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0,
                           "");
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::lines({"MemBuffer::unlock"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::unlock(2)", "MemBuffer::unlock(3)",
                            "MemBuffer::unlock(4)"));
}

TEST_F(Stop, AsksForTheCountAfterEveryBuffer) {
    CVideoChannel& channel = live();
    // The third answer is that there are none.
    virtualCamerasFailCall("MemBufferCollection::getBufferCount", 3, 1, VIRTUAL_CAMERAS_FAIL_FALSE,
                           0, "");
    recordAll();
    stop(channel);
    EXPECT_THAT(library_log::lines({"MemBuffer::unlock"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::unlock(1)"));
}

}  // namespace
