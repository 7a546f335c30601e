// SPDX-License-Identifier: MIT
// Stopping live video.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* noDeviceToStop = "No valid video capture device selected.";

class Stop : public CGreyCamera {};

TEST_F(Stop, CallsTheLibraryInItsFixedOrder) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    recordAll();
    EXPECT_EQ(stop(), accepted());
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
    openLive();
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(library_log::count("MemBuffer::unlock"), 5U);
}

TEST_F(Stop, StartsComThenResetsTheEventThenStopsCom) {
    openLive();
    recordAll();
    EXPECT_EQ(comChange(0, [&] { EXPECT_EQ(stop(), accepted()); }), 0);
    EXPECT_THAT(win32Calls({}), ElementsAre("CoInitializeEx(null, 0)",
                                            StartsWith("ResetEvent(event "), "CoUninitialize()"));
}

TEST_F(Stop, BalancesTheSecondComOfAThreadToo) {
    openLive();
    recordAll();
    EXPECT_EQ(comChange(1, [&] { EXPECT_EQ(stop(), accepted()); }), 0);
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)", "CoInitializeEx(null, 0)",
                                        "CoUninitialize()"));
}

TEST_F(Stop, DoesNotStopComThatItCouldNotStart) {
    openLive();
    win32::reset();
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    EXPECT_EQ(comChange(0, [&] { EXPECT_EQ(stop(), accepted()); }), 0);
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)"));
}

TEST_F(Stop, DoesNotBalanceSuccessesOfAnyOtherKind) {
    openLive();
    win32::reset();
    win32::injectResults("CoInitializeEx", {2});
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(comCalls(), ElementsAre("CoInitializeEx(null, 0)"));
    CoUninitialize();
}

TEST_F(Stop, FailsWithoutADevice) {
    open();
    unplug();
    recordAll();
    EXPECT_EQ(stop(), refused(noDeviceToStop));
    EXPECT_THAT(library_log::lines(), ElementsAre("Grabber::isDevValid() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
    EXPECT_EQ(channel().StopAcquisition(nullptr), 1);
}

TEST_F(Stop, ChangesNothingWhenStopped) {
    open();
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false"));
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(Stop, KeepsAPendingFrameWhenLiveVideoHasEndedOtherwise) {
    openLive(rigs::grey(rigs::trigger));
    ASSERT_EQ(waitForDelivery(), done());
    // A change of trigger mode stops live video; this one does not start again.
    refuseCall("Grabber::startLive");
    EXPECT_EQ(parameters(triggerOn()), accepted());
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::lines(),
                ElementsAre("Grabber::isDevValid() -> true", "Grabber::isLive() -> false"));
    EXPECT_EQ(lockedBuffers(), 1);
    EXPECT_EQ(copiedFrame()[4], 0xC1);
}

TEST_F(Stop, ResetsASignalThatNobodyTook) {
    openLive();
    // The wait sees a time-out although the frame has come: the event stays signalled.
    win32::injectResults("ResetEvent", {TRUE});
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_EQ(stop(), accepted());
    EXPECT_EQ(start(), accepted());
    EXPECT_EQ(waitForDelivery(), done());
    copiedFrame();  // nothing, had a signal of before the stop woken the wait
}

TEST_F(Stop, GoesOnWithoutASinkOrBuffers) {
    openLive();
    refuseCall("FrameHandlerSink::getMemBufferCollection");
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::operations({"MemBuffer::", "MemBufferCollection::"}), IsEmpty());

    refuseCall("FrameHandlerSink::create");
    EXPECT_EQ(set("pixelformat", "mono8"), accepted());
    EXPECT_EQ(start(), accepted());
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "MemBuffer::"}), IsEmpty());
}

TEST_F(Stop, SkipsABufferThatIsNotThere) {
    openLive();
    refuseCall("MemBufferCollection::operator[]", 2);
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::lines({"MemBuffer::unlock"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::unlock(2)", "MemBuffer::unlock(3)",
                            "MemBuffer::unlock(4)"));
}

TEST_F(Stop, AsksForTheCountAfterEveryBuffer) {
    openLive();
    // The third answer is that there are none.
    refuseCall("MemBufferCollection::getBufferCount", 3);
    recordAll();
    EXPECT_EQ(stop(), accepted());
    EXPECT_THAT(library_log::lines({"MemBuffer::unlock"}),
                ElementsAre("MemBuffer::unlock(0)", "MemBuffer::unlock(1)"));
}

}  // namespace
