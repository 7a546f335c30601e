// SPDX-License-Identifier: MIT
// A camera that goes away while it is live, and the search for it.
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DeviceLoss : public CChannelTest {
protected:
    // A live channel at a position of the rig, whose camera is then unplugged.
    CVideoChannel& lost(const std::string& rig, const char* camera = "1A2B",
                        std::uint32_t position = 0) {
        loadRig(rig);
        CVideoChannel& channel = makeChannel(position);
        start(channel);
        virtualCamerasUnplug(camera);
        recordAll();
        return channel;
    }
    static std::string triggerState(const char* camera = "1A2B") {
        char text[64] = {};
        virtualCamerasReadProperty(camera, "Trigger", "Enable", "IVCDSwitchProperty", text,
                                   sizeof(text));
        return text;
    }
    static void enableTrigger(CVideoChannel& channel) {
        CameraParameterBlock block{};
        block.triggerEnable = 1;
        EXPECT_EQ(channel.SetCameraParameters(nullptr, &block), 0);
    }
    static void expectLost(const WaitOutcome& outcome) {
        EXPECT_EQ(outcome.result, 1);
        EXPECT_EQ(outcome.status, 8192U);
        EXPECT_EQ(outcome.text, "The video capture device is disconnected.");
    }
    static std::vector<std::string> search() {
        return library_log::lines({"Grabber::", "VideoCaptureDeviceItem::getSerialNumber"});
    }
};

TEST_F(DeviceLoss, FailsEveryWaitAndSearchesAgainEachTime) {
    CVideoChannel& channel = lost(rigs::grey());
    expectLost(waitFrame(channel));
    expectLost(waitFrame(channel));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device lost!\n"));
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 0",
                                      "Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 0"));
    EXPECT_THAT(win32Calls({"WaitForSingleObject", "ResetEvent"}), IsEmpty());
}

TEST_F(DeviceLoss, TellsTheDebuggerBeforeItStartsComForTheSearch) {
    CVideoChannel& channel = lost(rigs::grey());
    expectLost(waitFrame(channel));
    const auto calls =
        win32Calls({"OutputDebugStringW", "CoInitializeEx", "CoUninitialize", "MessageBoxW"});
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0], "OutputDebugStringW(Device lost!\n)");
    EXPECT_EQ(calls[1], "CoInitializeEx(null, 0)");
}

TEST_F(DeviceLoss, ReopensAndRestartsTheSameCameraAndWaitsOn) {
    CVideoChannel& channel = lost(rigs::grey());
    expectLost(waitFrame(channel));
    virtualCamerasPlug("1A2B");
    recordAll();
    const WaitOutcome outcome = waitForDelivery(channel, "1A2B");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 0U);
    EXPECT_TRUE(outcome.textUntouched);
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Mono 23) -> true",
                                      "Grabber::getDev() -> SIM Mono 23",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> true",
                                      "Grabber::startLive(false) -> true"));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n",
                                                    "FrameReady:\n", "FrameReady: ok\n"));
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1) << "live video began anew";
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(DeviceLoss, RestoresWithinTheSameWait) {
    CVideoChannel& channel = lost(rigs::grey());
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
}

TEST_F(DeviceLoss, KeepsTheSinkAndTheSettings) {
    CVideoChannel& channel = lost(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    virtualCamerasPlug("1A2B");
    recordAll();
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_THAT(library_log::operations({"FrameHandlerSink::", "Grabber::setSinkType",
                                         "Grabber::setVideoFormat", "IVCDRangeProperty::"}),
                IsEmpty());
}

TEST_F(DeviceLoss, ForgetsAFrameThatWasReady) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    virtualCamerasUnplug("1A2B");
    expectLost(waitFrame(channel));
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 4096U);
    EXPECT_TRUE(frame.isUntouched());
}

TEST_F(DeviceLoss, KeepsAReadyFrameUntilTheNextWaitNoticesTheLoss) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    start(channel);
    ASSERT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    virtualCamerasUnplug("1A2B");
    CHostMemory frame(32);
    EXPECT_EQ(copyFrame(channel, frame), 0U);
    EXPECT_EQ(frame[4], 0xC1);
}

TEST_F(DeviceLoss, ClosesACameraWithAnotherSerialNumber) {
    CVideoChannel& channel = lost(rigs::color() + rigs::grey(), "1A2B", 1);
    expectLost(waitFrame(channel));
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Color 23) -> true",
                                      "Grabber::getDev() -> SIM Color 23",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> true",
                                      "Grabber::closeDev() -> true"));
    EXPECT_EQ(alive().openDevices, 0U);
}

TEST_F(DeviceLoss, LeavesACameraWithoutASerialNumberOpenUntilTheNext) {
    CVideoChannel& channel =
        lost(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\"") + rigs::grey(), "1A2B", 1);
    expectLost(waitFrame(channel));
    EXPECT_THAT(search(), ElementsAre("Grabber::isDevValid() -> false",
                                      "Grabber::getAvailableVideoCaptureDevices_() -> 1",
                                      "Grabber::openDev(SIM Nameless) -> true",
                                      "Grabber::getDev() -> SIM Nameless",
                                      "VideoCaptureDeviceItem::getSerialNumber() -> false"));
    EXPECT_EQ(alive().openDevices, 1U);
}

TEST_F(DeviceLoss, ReplacesACameraWithoutASerialNumberByTheNextCandidate) {
    CVideoChannel& channel =
        lost(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\"") + rigs::grey(), "1A2B", 1);
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_THAT(library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
                ElementsAre("Grabber::openDev(SIM Nameless) -> true",
                            "Grabber::openDev(SIM Mono 23) -> true"));
    EXPECT_EQ(alive().openDevices, 1U);
}

TEST_F(DeviceLoss, EndsItsWalkWithTheCameraFound) {
    CVideoChannel& channel = lost(rigs::grey() + rigs::color());
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_THAT(library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
                ElementsAre("Grabber::openDev(SIM Mono 23) -> true"));
}

TEST_F(DeviceLoss, NeverFindsACameraThatHadNoSerialNumber) {
    CVideoChannel& channel =
        lost(rigs::camera("SIM Nameless", "", "\"Y800 (8x4)\""), "SIM Nameless");
    virtualCamerasPlug("SIM Nameless");
    const WaitOutcome first = waitFrame(channel);
    expectLost(first);
    EXPECT_EQ(library_log::count("Grabber::startLive"), 0U);
}

TEST_F(DeviceLoss, SearchesNothingWithoutAList) {
    CVideoChannel& channel = lost(rigs::grey());
    virtualCamerasPlug("1A2B");
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 2, 1,
                           VIRTUAL_CAMERAS_FAIL_EMPTY, 0, "");
    expectLost(waitFrame(channel));
    expectLost(waitFrame(channel));
    EXPECT_EQ(library_log::count("Grabber::openDev"), 0U);
    EXPECT_EQ(waitInVain(channel).status, 4096U);
}

TEST_F(DeviceLoss, GoesOnWithACameraThatDoesNotOpen) {
    CVideoChannel& channel = lost(rigs::grey());
    loadRig(rigs::grey("open = \"fail\"") + rigs::color());
    expectLost(waitFrame(channel));
    EXPECT_THAT(
        library_log::lines({"Grabber::openDev", "Grabber::closeDev"}),
        ElementsAre("Grabber::openDev(SIM Mono 23) -> false",
                    "Grabber::openDev(SIM Color 23) -> true", "Grabber::closeDev() -> true"));
    loadRig(rigs::grey());
    EXPECT_EQ(waitInVain(channel).status, 4096U);
}

TEST_F(DeviceLoss, CountsAsRestoredEvenWhenLiveVideoDoesNotStart) {
    CVideoChannel& channel = lost(rigs::grey());
    virtualCamerasPlug("1A2B");
    virtualCamerasFailCall("Grabber::startLive", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    const WaitOutcome outcome = waitInVain(channel);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.status, 4096U);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
    start(channel);
}

TEST_F(DeviceLoss, AppliesTriggerModeBeforeItStartsAgain) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    start(channel);
    enableTrigger(channel);
    ASSERT_EQ(triggerState(), "true");
    virtualCamerasUnplug("1A2B");
    // The camera that comes back has forgotten its trigger mode.
    virtualCamerasPlug("1A2B");
    ASSERT_EQ(triggerState(), "false");
    recordAll();
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(triggerState(), "true");
    EXPECT_THAT(
        library_log::operations(
            {"Grabber::openDev", "IVCDSwitchProperty::setSwitch", "Grabber::startLive"}),
        ElementsAre("Grabber::openDev", "IVCDSwitchProperty::setSwitch", "Grabber::startLive"));
}

TEST_F(DeviceLoss, AppliesNoTriggerModeThatTheHostDidNotAskFor) {
    CVideoChannel& channel = lost(rigs::grey(rigs::trigger));
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_THAT(library_log::operations({"IVCDSwitchProperty::"}), IsEmpty());
}

TEST_F(DeviceLoss, TakesAnyTriggerModeButZeroAsAskedFor) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    start(channel);
    CameraParameterBlock block{};
    block.triggerEnable = 7;
    EXPECT_EQ(channel.SetCameraParameters(nullptr, &block), 0);
    EXPECT_EQ(triggerState(), "false");
    virtualCamerasUnplug("1A2B");
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(triggerState(), "true");
}

TEST_F(DeviceLoss, SkipsATriggerThatTheCameraDoesNotHave) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    start(channel);
    enableTrigger(channel);
    virtualCamerasUnplug("1A2B");
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
    EXPECT_EQ(property(channel, "trigger enable switch"),
              "[Unknown property \"trigger enable switch\"]");
}

TEST_F(DeviceLoss, BalancesComHoweverItsThreadStands) {
    CVideoChannel& channel = lost(rigs::grey());
    for (const int starts : {0, 1, 2}) {
        CHostThread host([&] {
            for (int i = 0; i < starts; ++i) {
                CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            }
            const std::int32_t before = win32::comBalance();
            expectLost(waitFrame(channel));
            EXPECT_EQ(win32::comBalance(), before) << starts;
        });
        host.join();
    }
    EXPECT_EQ(win32::unbalancedComStops(), 1U) << "the one of the load";
}

TEST_F(DeviceLoss, DoesNotStopComThatItCouldNotStart) {
    CVideoChannel& channel = lost(rigs::grey());
    win32::injectResults("CoInitializeEx", {RPC_E_CHANGED_MODE});
    expectLost(waitFrame(channel));
    EXPECT_THAT(win32Calls({"CoInitializeEx", "CoUninitialize"}),
                ElementsAre("CoInitializeEx(null, 0)"));
}

TEST_F(DeviceLoss, LetsAThrownTextPassAndStopsCom) {
    CVideoChannel& channel = lost(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_THROW, 0, "The bus is gone.");
    CHostThread host([&] {
        CHostStatus status;
        try {
            channel.WaitFrame(nullptr, status);
            ADD_FAILURE() << "nothing was thrown";
        } catch (char* text) {
            EXPECT_STREQ(text, "The bus is gone.");
        }
        EXPECT_TRUE(status.isUntouched());
        EXPECT_EQ(win32::comBalance(), 0);
    });
    host.join();
}

TEST_F(DeviceLoss, LeavesAStoppedChannelWithoutItsDeviceToTheWait) {
    loadRig(rigs::grey());
    CVideoChannel& channel = makeChannel();
    virtualCamerasUnplug("1A2B");
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    virtualCamerasPlug("1A2B");
    recordAll();
    // Start does not search; only a wait does, and it starts live video.
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(library_log::count("Grabber::openDev"), 0U);
    EXPECT_EQ(waitForDelivery(channel, "1A2B").status, 0U);
}

TEST_F(DeviceLoss, GoesLiveAgainWhenTheTriggerCanNotBeWritten) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    start(channel);
    enableTrigger(channel);
    virtualCamerasUnplug("1A2B");
    virtualCamerasPlug("1A2B");
    virtualCamerasFailCall("IVCDSwitchProperty::setSwitch", 1, 1, VIRTUAL_CAMERAS_FAIL_CODE,
                           static_cast<std::int32_t>(0x80004005), "");
    recordAll();
    const std::int32_t balance = win32::comBalance();
    EXPECT_THROW(waitFrame(channel), std::int32_t);
    EXPECT_EQ(win32::comBalance(), balance);
    EXPECT_THAT(library_log::lines({"Grabber::startLive"}),
                ElementsAre("Grabber::startLive(false) -> true"));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("Device lost!\n", "Device restored!\n"));
}

}  // namespace
