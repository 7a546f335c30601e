// SPDX-License-Identifier: MIT
// A camera that goes away while it is live, and the search for it.
#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t failure = -2147467259;  // 0x80004005

class DeviceLoss : public CGreyCamera {
protected:
    // A live channel at a position of the rig, whose camera is then unplugged.
    void lost(const std::string& rig = rigs::grey(), std::uint32_t position = 0) {
        openLive(rig, position);
        unplug();
        recordAll();
    }
    static std::string triggerState() {
        return deviceValue("Trigger", "Enable", "IVCDSwitchProperty");
    }
    void setTrigger(std::int32_t enable) const {
        CameraParameterBlock block{};
        block.triggerEnable = enable;
        EXPECT_EQ(parameters(block), accepted());
    }
    void expectLost() const {
        EXPECT_EQ(wait(), deviceLost("The video capture device is disconnected."));
    }
    static std::vector<std::string> search() {
        return library_log::lines({"Grabber::", "VideoCaptureDeviceItem::getSerialNumber"});
    }
};

TEST_F(DeviceLoss, FailsEveryWaitAndSearchesAgainEachTime) {
    lost();
    expectLost();
    expectLost();
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device lost!\n"));
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 0",
                                      "Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 0"));
    EXPECT_THAT(win32Calls({"WaitForSingleObject", "ResetEvent"}), IsEmpty());
}

TEST_F(DeviceLoss, TellsTheDebuggerBeforeItStartsComForTheSearch) {
    lost();
    expectLost();
    const auto calls =
        win32Calls({"OutputDebugStringW", "CoInitializeEx", "CoUninitialize", "MessageBoxW"});
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0], "OutputDebugStringW(Device lost!\n)");
    EXPECT_EQ(calls[1], "CoInitializeEx(null, 0)");
}

TEST_F(DeviceLoss, ReopensAndRestartsTheSameCameraAndWaitsOn) {
    lost();
    expectLost();
    plug();
    recordAll();
    EXPECT_EQ(waitForDelivery(), done());
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Mono 23) -> true",
                                      "Grabber::getDev() -> SIM Mono 23",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> true",
                                      "Grabber::startLive(false) -> true"));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n",
                                                    "FrameReady:\n", "FrameReady: ok\n"));
    EXPECT_EQ(copiedFrame()[4], 0xC1) << "live video began anew";
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(DeviceLoss, RestoresWithinTheSameWait) {
    lost();
    plug();
    EXPECT_EQ(waitForDelivery(), done());
}

TEST_F(DeviceLoss, KeepsTheSinkAndTheSettings) {
    lost(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    plug();
    recordAll();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType",
                                         "Grabber::setVideoFormat", "IVCDRangeProperty::"}),
                IsEmpty());
}

TEST_F(DeviceLoss, ForgetsAFrameThatWasReady) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    unplug();
    expectLost();
    expectNoFrame();
}

TEST_F(DeviceLoss, KeepsAReadyFrameUntilTheNextWaitNoticesTheLoss) {
    openLive();
    ASSERT_EQ(waitForDelivery(), done());
    unplug();
    EXPECT_EQ(copiedFrame()[4], 0xC1);
}

TEST_F(DeviceLoss, ClosesACameraWithAnotherSerialNumber) {
    lost(rigs::color() + rigs::grey(), 1);
    expectLost();
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Color 23) -> true",
                                      "Grabber::getDev() -> SIM Color 23",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> true",
                                      "Grabber::closeDev() -> true"));
    EXPECT_EQ(alive().openDevices, 0U);
}

TEST_F(DeviceLoss, LeavesACameraWithoutASerialNumberOpenUntilTheNext) {
    lost(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\"") + rigs::grey(), 1);
    expectLost();
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Nameless) -> true",
                                      "Grabber::getDev() -> SIM Nameless",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> false"));
    EXPECT_EQ(alive().openDevices, 1U);
}

TEST_F(DeviceLoss, ReplacesACameraWithoutASerialNumberByTheNextCandidate) {
    lost(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\"") + rigs::grey(), 1);
    plug();
    EXPECT_EQ(waitForDelivery(), done());
    EXPECT_THAT(library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
                ElementsAre("Grabber::openDev(SIM Nameless) -> true",
                            "Grabber::openDev(SIM Mono 23) -> true"));
    EXPECT_EQ(alive().openDevices, 1U);
}

TEST_F(DeviceLoss, EndsItsWalkWithTheCameraFound) {
    lost(rigs::grey() + rigs::color());
    plug();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_THAT(library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
                ElementsAre("Grabber::openDev(SIM Mono 23) -> true"));
}

TEST_F(DeviceLoss, NeverFindsACameraThatHadNoSerialNumber) {
    openLive(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\""));
    virtualCamerasUnplug("SIM Nameless");
    recordAll();
    virtualCamerasPlug("SIM Nameless");
    expectLost();
    EXPECT_EQ(library_log::count("Grabber::startLive"), 0U);
}

TEST_F(DeviceLoss, SearchesNothingWithoutAList) {
    lost();
    plug();
    refuseCall("Grabber::getAvailableVideoCaptureDevices_");
    emptyCall("Grabber::getAvailableVideoCaptureDevices_", 2);
    expectLost();
    expectLost();
    EXPECT_EQ(library_log::count("Grabber::openDev"), 0U);
    EXPECT_EQ(waitInVain(), noFrame());
}

TEST_F(DeviceLoss, GoesOnWithACameraThatDoesNotOpen) {
    lost();
    loadRig(rigs::grey("open = \"fail\"") + rigs::color());
    expectLost();
    EXPECT_THAT(
        library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
        ElementsAre("Grabber::openDev(SIM Mono 23) -> false",
                    "Grabber::openDev(SIM Color 23) -> true", "Grabber::closeDev() -> true"));
    loadRig(rigs::grey());
    EXPECT_EQ(waitInVain(), noFrame());
}

TEST_F(DeviceLoss, CountsAsRestoredEvenWhenLiveVideoDoesNotStart) {
    lost();
    plug();
    refuseCall("Grabber::startLive");
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
    EXPECT_EQ(start(), accepted());
}

TEST_F(DeviceLoss, AppliesTriggerModeBeforeItStartsAgain) {
    openLive(rigs::grey(rigs::trigger));
    setTrigger(1);
    ASSERT_EQ(triggerState(), "true");
    unplug();
    // The camera that comes back has forgotten its trigger mode.
    plug();
    ASSERT_EQ(triggerState(), "false");
    recordAll();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(triggerState(), "true");
    EXPECT_THAT(
        library_log::operations(
            {"Grabber::openDev", "IVCDSwitchProperty::setSwitch", "Grabber::startLive"}),
        ElementsAre("Grabber::openDev", "IVCDSwitchProperty::setSwitch", "Grabber::startLive"));
}

TEST_F(DeviceLoss, AppliesNoTriggerModeThatTheHostDidNotAskFor) {
    lost(rigs::grey(rigs::trigger));
    plug();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_THAT(library_log::operations({"IVCDSwitchProperty::"}), IsEmpty());
}

TEST_F(DeviceLoss, TakesAnyTriggerModeButZeroAsAskedFor) {
    openLive(rigs::grey(rigs::trigger));
    setTrigger(7);
    EXPECT_EQ(triggerState(), "false");
    unplug();
    plug();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(triggerState(), "true");
}

TEST_F(DeviceLoss, SkipsATriggerThatTheCameraDoesNotHave) {
    openLive();
    setTrigger(1);
    unplug();
    plug();
    EXPECT_EQ(waitForDelivery(), done());
    EXPECT_EQ(get("trigger enable switch"), refused("Unknown property \"trigger enable switch\""));
}

TEST_F(DeviceLoss, BalancesComHoweverItsThreadStands) {
    lost();
    for (const int starts : {0, 1, 2}) {
        EXPECT_EQ(comChange(starts, [this] { expectLost(); }), 0) << starts;
    }
    EXPECT_EQ(win32::unbalancedComStops(), 1U) << "the one of the load";
}

TEST_F(DeviceLoss, DoesNotStopComThatItCouldNotStart) {
    lost();
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    expectLost();
    EXPECT_THAT(win32Calls({"CoInitializeEx", "CoUninitialize"}),
                ElementsAre("CoInitializeEx(null, 0)"));
}

TEST_F(DeviceLoss, LetsAThrownTextPassAndStopsCom) {
    lost();
    throwFromCall("Grabber::getAvailableVideoCaptureDevices_", "The bus is gone.");
    EXPECT_EQ(comChange(0,
                        [this] {
                            CHostStatus status;
                            EXPECT_EQ(thrownText([&] { channel().WaitFrame(nullptr, status); }),
                                      "The bus is gone.");
                            EXPECT_TRUE(status.isUntouched());
                        }),
              0);
}

TEST_F(DeviceLoss, LeavesAStoppedChannelWithoutItsDeviceToTheWait) {
    open();
    unplug();
    EXPECT_EQ(start().result, 1);
    plug();
    recordAll();
    // Start does not search; only a wait does, and it starts live video.
    EXPECT_EQ(start().result, 1);
    EXPECT_EQ(library_log::count("Grabber::openDev"), 0U);
    EXPECT_EQ(waitForDelivery(), done());
}

TEST_F(DeviceLoss, GoesLiveAgainWhenTheTriggerCanNotBeWritten) {
    openLive(rigs::grey(rigs::trigger));
    setTrigger(1);
    unplug();
    plug();
    failCallWith(failure, "IVCDSwitchProperty::setSwitch");
    recordAll();
    const std::int32_t balance = win32::comBalance();
    EXPECT_EQ(thrownCode([this] { wait(); }), failure);
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_THAT(library_log::lines({"Grabber::startLive"}),
                ElementsAre("Grabber::startLive(false) -> true"));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
}

}  // namespace
