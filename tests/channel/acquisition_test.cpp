// SPDX-License-Identifier: MIT
// Starting, stopping and waiting.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* noDevice = "No valid video capture device selected.";

class Acquisition : public CChannelTest {
protected:
    CVideoChannel& stopped() {
        loadRig(rigs::grey());
        return makeChannel();
    }
    CVideoChannel& live() {
        CVideoChannel& channel = stopped();
        start(channel);
        return channel;
    }
    static std::vector<std::string> comCalls() {
        return win32Calls({"CoInitializeEx", "CoUninitialize", "OleInitialize"});
    }
    // The balance that `work` leaves on a thread that had `starts` starts before.
    static std::int32_t comChange(int starts, const std::function<void()>& work) {
        std::int32_t change = -99;
        CHostThread host([&] {
            for (int i = 0; i < starts; ++i) {
                CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            }
            const std::int32_t before = win32::comBalance();
            work();
            change = win32::comBalance() - before;
        });
        host.join();
        return change;
    }
    static std::int32_t lockedBuffers() {
        std::int32_t locked = 0;
        for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
            locked += virtualCamerasBufferLocks("1A2B", buffer);
        }
        return locked;
    }
};

using Start = Acquisition;

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

using Stop = Acquisition;

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

using Wait = Acquisition;

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
