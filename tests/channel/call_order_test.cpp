// SPDX-License-Identifier: MIT
// Calls of the capture library among those of Windows, in one order.
#include <functional>

#include "tests/channel/trace_recorder.h"
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;

class CallOrder : public CGreyCamera {
protected:
    void lose() const {
        unplug();
        plug();
    }
    // The library's operations and the calls of Windows that `work` makes on a thread on which
    // nobody has started COM. A text for the debugger stands for its call.
    std::vector<std::string> callsOf(const std::function<void()>& work) {
        recordAll();
        m_calls.clear();
        m_seen = 0;
        for (const char* name : {"CoInitializeEx", "CoUninitialize", "ResetEvent",
                                 "WaitForSingleObject", "MessageBoxW"}) {
            win32::runInside(name, [this, name] { add(name); });
        }
        win32::runInside("OutputDebugStringW", [this] { add(win32::debuggerTexts().back()); });
        CHostThread(work).join();
        addLibrarys();
        win32::reset();
        return m_calls;
    }

private:
    void addLibrarys() {
        const std::vector<std::string> operations = library_log::operations(
            {"Grabber::", "MemBuffer::", "VideoCaptureDeviceItem::getSerialNumber",
             "IVCDSwitchProperty::setSwitch"});
        for (; m_seen < operations.size(); ++m_seen) {
            m_calls.push_back(operations[m_seen]);
        }
    }
    void add(const std::string& call) {
        addLibrarys();
        m_calls.push_back(call);
    }

    std::vector<std::string> m_calls;
    std::size_t m_seen = 0;
};

TEST_F(CallOrder, OfAStartHasTheStartBetweenThoseOfCom) {
    open();
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(start(), accepted()); }),
                ElementsAre("Grabber::isDevValid", "Grabber::isLive", "CoInitializeEx",
                            "Grabber::startLive", "Grabber::getAcqSizeMaxX",
                            "Grabber::getAcqSizeMaxY", "CoUninitialize"));
}

TEST_F(CallOrder, OfAStartThatFailsAsksForTheReasonBeforeItStopsCom) {
    open();
    refuseCall("Grabber::startLive");
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(start().result, 1); }),
                ElementsAre("Grabber::isDevValid", "Grabber::isLive", "CoInitializeEx",
                            "Grabber::startLive", "Grabber::getLastError", "CoUninitialize"));
}

TEST_F(CallOrder, OfAStartTracesThatItStopsComBeforeItDoes) {
    open();
    recordAll();
    trace_recorder::clear();
    CHostThread([this] { EXPECT_EQ(start(), accepted()); }).join();
    ASSERT_EQ(trace_recorder::calls().size(), 1U);
    EXPECT_EQ(trace_recorder::calls()[0].libraryCalls, 5U) << "behind the last of them";
    EXPECT_EQ(trace_recorder::calls()[0].win32Calls, 1U) << "only COM's start stands before it";
    EXPECT_EQ(win32::calls().size(), 2U);
}

TEST_F(CallOrder, OfAStopTakesNoFrameAnyMoreBeforeItForgetsTheSignal) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(stop(), accepted()); }),
                ElementsAre("Grabber::isDevValid", "Grabber::isLive", "CoInitializeEx",
                            "Grabber::stopLive", "ResetEvent", "MemBuffer::unlock",
                            "MemBuffer::unlock", "MemBuffer::unlock", "MemBuffer::unlock",
                            "MemBuffer::unlock", "MemBuffer::unlock", "CoUninitialize"));
}

TEST_F(CallOrder, OfARestoreIsLiveBeforeItTellsAndStopsComBeforeItWaits) {
    openLive(rigs::grey(rigs::trigger));
    EXPECT_EQ(parameters(triggerOn()), accepted());
    lose();
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(waitInVain(), noFrame()); }),
                ElementsAre("Grabber::isDevValid", "Device lost!\n", "CoInitializeEx",
                            "Grabber::getAvailableVideoCaptureDevices_", "Grabber::openDev",
                            "Grabber::getDev", "VideoCaptureDeviceItem::getSerialNumber",
                            "IVCDSwitchProperty::setSwitch", "Grabber::startLive",
                            "Device restored!\n", "CoUninitialize", "WaitForSingleObject"));
}

TEST_F(CallOrder, OfARestoreWhoseTriggerFailsIsTheSameUpToTheWait) {
    openLive(rigs::grey(rigs::trigger));
    EXPECT_EQ(parameters(triggerOn()), accepted());
    lose();
    failCall("IVCDSwitchProperty::setSwitch");
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(thrownCode([this] { wait(); }), accessDenied); }),
                ElementsAre("Grabber::isDevValid", "Device lost!\n", "CoInitializeEx",
                            "Grabber::getAvailableVideoCaptureDevices_", "Grabber::openDev",
                            "Grabber::getDev", "VideoCaptureDeviceItem::getSerialNumber",
                            "IVCDSwitchProperty::setSwitch", "Grabber::startLive",
                            "Device restored!\n", "CoUninitialize"));
}

TEST_F(CallOrder, OfASearchInVainClosesTheOtherCameraBeforeItStopsCom) {
    openLive(rigs::color() + rigs::grey(), 1);
    unplug();
    EXPECT_THAT(callsOf([this] { EXPECT_EQ(wait().word, 8192U); }),
                ElementsAre("Grabber::isDevValid", "Device lost!\n", "CoInitializeEx",
                            "Grabber::getAvailableVideoCaptureDevices_", "Grabber::openDev",
                            "Grabber::getDev", "VideoCaptureDeviceItem::getSerialNumber",
                            "Grabber::closeDev", "CoUninitialize"));
}

}  // namespace
