// SPDX-License-Identifier: MIT
// What making a channel does to its device, and the facts that it keeps.
#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Construction : public CChannelTest {
protected:
    static std::string state(const char* camera, const char* item, const char* element,
                             const char* interfaceName) {
        char text[64] = {};
        EXPECT_EQ(
            virtualCamerasReadProperty(camera, item, element, interfaceName, text, sizeof(text)),
            1);
        return text;
    }
};

TEST_F(Construction, CallsTheLibraryInItsFixedOrder) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    makeRecordedChannel();
    auto calls = library_log::operations(
        {"Grabber::Grabber", "Grabber::addListener", "Grabber::openDev",
         "Grabber::setOverlayBitmapPathPosition", "Grabber::setVideoFormat",
         "VideoCaptureDeviceItem::c_str", "VideoCaptureDeviceItem::getFriendlyName_",
         "FrameHandlerSink::create", "FrameHandlerSink::setSnapMode", "Grabber::setSinkType",
         "Grabber::getAcqSizeMaxX", "Grabber::getAcqSizeMaxY",
         "VideoCaptureDeviceItem::getSerialNumber", "Grabber::getAvailableVCDProperties",
         "Grabber::isFrameRateListAvailable", "Grabber::isInputChannelAvailableWithCurDev",
         "Grabber::isLive", "Grabber::startLive", "Grabber::closeDev"});
    // Each setting of the table asks for the items once more.
    calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
    EXPECT_THAT(
        calls,
        ElementsAre(
            "Grabber::Grabber", "VideoCaptureDeviceItem::c_str", "Grabber::addListener",
            "Grabber::openDev", "Grabber::setOverlayBitmapPathPosition", "Grabber::setVideoFormat",
            "VideoCaptureDeviceItem::getFriendlyName_", "FrameHandlerSink::create",
            "VideoCaptureDeviceItem::getFriendlyName_", "FrameHandlerSink::setSnapMode",
            "Grabber::setSinkType", "Grabber::getAcqSizeMaxX", "Grabber::getAcqSizeMaxY",
            "VideoCaptureDeviceItem::getSerialNumber", "Grabber::getAvailableVCDProperties",
            "Grabber::isFrameRateListAvailable", "Grabber::isInputChannelAvailableWithCurDev",
            "Grabber::getAvailableVCDProperties"));
}

TEST_F(Construction, ReadsContrastThenBrightnessThenExposure) {
    loadRig(rigs::grey(std::string(rigs::exposureWithValueSwitch) +
                       rigs::range("Brightness", 0, 100, 25) +
                       rigs::range("Contrast", 0, 255, 51)));
    makeRecordedChannel();
    std::vector<std::string> calls;
    for (const auto& call : library_log::calls()) {
        if (library_log::matches(
                call.operation, {"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
                                 "IVCDRangeProperty::getValue", "IVCDSwitchProperty::setSwitch",
                                 "IVCDAbsoluteValueProperty::getValue"})) {
            calls.push_back(library_log::line(call));
        }
    }
    EXPECT_THAT(
        calls,
        ElementsAre("IVCDRangeProperty::getRangeMin(Contrast,Value) -> 0x00000000 0",
                    "IVCDRangeProperty::getRangeMax(Contrast,Value) -> 0x00000000 255",
                    "IVCDRangeProperty::getValue(Contrast,Value) -> 0x00000000 51",
                    "IVCDRangeProperty::getRangeMin(Brightness,Value) -> 0x00000000 0",
                    "IVCDRangeProperty::getRangeMax(Brightness,Value) -> 0x00000000 100",
                    "IVCDRangeProperty::getValue(Brightness,Value) -> 0x00000000 25",
                    "IVCDSwitchProperty::setSwitch(Exposure,Auto,0) -> 0x00000000",
                    "IVCDAbsoluteValueProperty::getValue(Exposure,Value) -> 0x00000000 0.04"));
}

TEST_F(Construction, AsksForEveryEventAndSwitchesTheOverlayOff) {
    loadRig(rigs::grey());
    makeRecordedChannel();
    EXPECT_THAT(library_log::lines({"Grabber::addListener", "Grabber::openDev",
                                    "Grabber::setOverlayBitmapPathPosition"}),
                ElementsAre("Grabber::addListener(4294967295) -> true",
                            "Grabber::openDev(SIM Mono 23) -> true",
                            "Grabber::setOverlayBitmapPathPosition(0) -> true"));
}

TEST_F(Construction, IgnoresFailuresOfTheListenerTheOverlayAndTheSink) {
    loadRig(rigs::grey());
    for (const char* operation : {"Grabber::addListener", "Grabber::setOverlayBitmapPathPosition",
                                  "Grabber::setSinkType", "Grabber::setVideoFormat"}) {
        virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    }
    const CVideoChannel& channel = makeChannel();
    EXPECT_STREQ(channel.serialText(), "1A2B");
    EXPECT_EQ(channel.width(), 8);
}

TEST_F(Construction, MakesOneUnnamedManualResetEventThatIsNotSignalled) {
    loadRig(rigs::grey());
    makeRecordedChannel();
    EXPECT_THAT(win32Calls({"CreateEventA", "CreateEventW"}),
                ElementsAre("CreateEventA(1, 0, null)"));
    EXPECT_EQ(win32::calls().back().name, "CreateEventA");
}

TEST_F(Construction, TouchesNeitherComNorFiles) {
    loadRig(rigs::grey(rigs::trigger));
    makeRecordedChannel();
    EXPECT_THAT(win32Calls({"CoInitializeEx", "CoUninitialize", "OleInitialize", "MessageBoxW",
                            "LoadLibraryExW", "SetEvent", "WaitForSingleObject"}),
                IsEmpty());
}

TEST_F(Construction, KeepsNameSizeAndSerialNumber) {
    loadRig(rigs::camera("SIM Wide 3", "DEADBEEF01", "\"Y800 (16x2)\""));
    const CVideoChannel& channel = makeChannel();
    EXPECT_STREQ(channel.deviceName(), "SIM Wide 3");
    EXPECT_STREQ(channel.serialText(), "DEADBEEF01");
    EXPECT_EQ(channel.width(), 16);
    EXPECT_EQ(channel.height(), 2);
}

TEST_F(Construction, WritesSerialNumbersWithoutLeadingZeros) {
    loadRig(rigs::camera("A", "001A2B", "\"Y800 (8x4)\"") +
            rigs::camera("B", "0", "\"Y800 (8x4)\"") +
            rigs::camera("C", "FFFFFFFFFFFFFFFF", "\"Y800 (8x4)\"") +
            rigs::camera("D", "", "\"Y800 (8x4)\""));
    EXPECT_STREQ(makeChannel(0).serialText(), "1A2B");
    EXPECT_STREQ(makeChannel(1).serialText(), "0");
    EXPECT_STREQ(makeChannel(2).serialText(), "FFFFFFFFFFFFFFFF");
    EXPECT_STREQ(makeChannel(3).serialText(), "n/a");
}

TEST_F(Construction, ReadsTheSerialNumberOfTheOpenDevice) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("VideoCaptureDeviceItem::getSerialNumber", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    EXPECT_STREQ(makeChannel().serialText(), "n/a");
}

TEST_F(Construction, CutsTheDeviceNameTo253Characters) {
    loadRig(rigs::camera(std::string(253, 'a'), "1", "\"Y800 (8x4)\"") +
            rigs::camera(std::string(254, 'b'), "2", "\"Y800 (8x4)\""));
    EXPECT_EQ(makeChannel(0).deviceName(), std::string(253, 'a'));
    EXPECT_EQ(makeChannel(1).deviceName(), std::string(253, 'b'));
}

TEST_F(Construction, MakesAChannelOfADeviceThatDoesNotOpen) {
    loadRig(rigs::grey("open = \"fail\""));
    CVideoChannel& channel = makeChannel();
    EXPECT_STREQ(channel.deviceName(), "SIM Mono 23");
    EXPECT_STREQ(channel.serialText(), "n/a");
    EXPECT_EQ(channel.contrast(), -1.0);
    EXPECT_EQ(channel.brightness(), -1.0);
    EXPECT_EQ(channel.exposure(), -1.0);
    CHostText text;
    EXPECT_EQ(channel.StartAcquisition(text), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
    text.refill();
    EXPECT_EQ(channel.StopAcquisition(text), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
    text.refill();
    ImageInfo image{};
    CHostStatus status;
    EXPECT_EQ(channel.GetImageInfo(text, &image, status), 1);
    EXPECT_EQ(text.text(), "No valid video capture device selected.");
}

TEST_F(Construction, TakesContrastAndBrightnessAsFractionsOfTheirRanges) {
    loadRig(
        rigs::grey(rigs::range("Contrast", 0, 255, 51) + rigs::range("Brightness", -100, 100, 50)));
    const CVideoChannel& channel = makeChannel();
    EXPECT_DOUBLE_EQ(channel.contrast(), 0.2);
    EXPECT_DOUBLE_EQ(channel.brightness(), 0.75);
}

TEST_F(Construction, HasMinusOneForMissingReadings) {
    loadRig(rigs::grey());
    const CVideoChannel& channel = makeChannel();
    EXPECT_EQ(channel.contrast(), -1.0);
    EXPECT_EQ(channel.brightness(), -1.0);
    EXPECT_EQ(channel.exposure(), -1.0);
}

TEST_F(Construction, HasMinusOneForADeviceWithoutProperties) {
    loadRig(rigs::grey("properties = false"));
    const CVideoChannel& channel = makeChannel();
    EXPECT_EQ(channel.contrast(), -1.0);
    EXPECT_EQ(channel.brightness(), -1.0);
    EXPECT_EQ(channel.exposure(), -1.0);
}

TEST_F(Construction, ReadsMinimumMaximumAndValueOncePerFraction) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    makeRecordedChannel();
    EXPECT_THAT(library_log::operations({"IVCDRangeProperty::"}),
                ElementsAre("IVCDRangeProperty::getInterfaceID", "IVCDRangeProperty::getRangeMin",
                            "IVCDRangeProperty::getRangeMax", "IVCDRangeProperty::getValue"));
    // The settings keep theirs: value, minimum and maximum.
    EXPECT_EQ(virtualCamerasInterfaceReferences("1A2B", "Contrast", "Value", "IVCDRangeProperty"),
              3);
}

TEST_F(Construction, HasZeroWhereTheKeyIsThereButNotTheItem) {
    constexpr std::string_view other = "{01020304-0506-0708-090A-0B0C0D0E0F10}";
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51) + "id = \"" + std::string(other) +
                       "\"\n" + rigs::range("Brightness", 0, 255, 51) + "id = \"{01020304-0506-" +
                       "0708-090A-0B0C0D0E0F11}\"\n"));
    CVideoChannel& channel = makeChannel();
    EXPECT_EQ(property(channel, "contrast value range"), "51");
    EXPECT_EQ(channel.contrast(), 0.0);
    EXPECT_EQ(channel.brightness(), 0.0);
}

TEST_F(Construction, DividesLikeIeeeWhereTheLimitsAreEqual) {
    loadRig(rigs::grey(rigs::range("Contrast", 7, 7, 7) + rigs::range("Brightness", 7, 7, 9)));
    const CVideoChannel& channel = makeChannel();
    EXPECT_TRUE(std::isnan(channel.contrast()));
    EXPECT_EQ(channel.brightness(), std::numeric_limits<double>::infinity());
}

TEST_F(Construction, TakesTheWidestRangeWithoutOverflow) {
    loadRig(
        rigs::grey("[[camera.item]]\nname = \"Contrast\"\nValue.range = { min = -2147483648, "
                   "max = 2147483647, value = 2147483647 }\n"));
    EXPECT_DOUBLE_EQ(makeChannel().contrast(), 1.0);
}

TEST_F(Construction, ThrowsAFailingResultCodeOfEachReading) {
    for (const char* operation :
         {"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
          "IVCDRangeProperty::getValue"}) {
        loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
        virtualCamerasFailCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_CODE,
                               static_cast<std::int32_t>(0x80040201), "");
        try {
            makeChannel();
            FAIL() << "nothing was thrown after " << operation;
        } catch (std::int32_t code) {
            EXPECT_EQ(code, static_cast<std::int32_t>(0x80040201));
        }
        EXPECT_EQ(alive().grabbers, 0U);
        EXPECT_EQ(alive().items, 0U);
    }
}

TEST_F(Construction, SwitchesTheAutomaticOffWhereTheExposureValueHasASwitch) {
    loadRig(rigs::grey(rigs::exposureWithValueSwitch));
    const CVideoChannel& channel = makeChannel();
    EXPECT_EQ(state("1A2B", "Exposure", "Auto", "IVCDSwitchProperty"), "false");
    EXPECT_EQ(state("1A2B", "Exposure", "Value", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.04);
}

TEST_F(Construction, KeepsTheAutomaticWhereTheExposureValueHasNoSwitch) {
    loadRig(rigs::grey(rigs::exposure));
    const CVideoChannel& channel = makeChannel();
    EXPECT_EQ(state("1A2B", "Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.04);
}

TEST_F(Construction, KeepsTheAutomaticWithoutAnAbsoluteExposure) {
    loadRig(
        rigs::grey("[[camera.item]]\nname = \"Exposure\"\nValue.switch = true\n"
                   "Auto.switch = true\n"));
    const CVideoChannel& channel = makeChannel();
    EXPECT_EQ(state("1A2B", "Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_EQ(channel.exposure(), -1.0);
}

TEST_F(Construction, SkipsAMissingAutomaticAndAddsNoKeyForIt) {
    loadRig(
        rigs::grey("[[camera.item]]\nname = \"Exposure\"\nValue.switch = true\n"
                   "Value.abs = { min = 0.0, max = 1.0, value = 0.5 }\n"));
    CVideoChannel& channel = makeChannel();
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.5);
    EXPECT_EQ(property(channel, "exposure auto switch"),
              "[Unknown property \"exposure auto switch\"]");
}

TEST_F(Construction, SkipsAnAutomaticThatIsNotBound) {
    loadRig(rigs::grey(rigs::exposureWithValueSwitch));
    // The third binding of the device's properties, the automatic's, finds nothing.
    virtualCamerasFailCall("IVCDPropertyItems::findItem", 5, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    CVideoChannel& channel = makeChannel();
    EXPECT_THAT(property(channel, "exposure auto switch"), ::testing::HasSubstr("not available!"));
    EXPECT_EQ(state("1A2B", "Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.04);
}

TEST_F(Construction, HasMinusOneForAnExposureThatIsNotBound) {
    loadRig(rigs::grey(rigs::exposure));
    virtualCamerasFailCall("IVCDPropertyItems::findItem", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    CVideoChannel& channel = makeChannel();
    EXPECT_THAT(property(channel, "exposure value abs"), ::testing::HasSubstr("not available!"));
    EXPECT_EQ(channel.exposure(), -1.0);
}

TEST_F(Construction, ReadsAnExposureOfAnotherKindOfItemAsMinusOne) {
    // A switch whose name makes the key of the absolute value.
    loadRig(
        rigs::grey("[[camera.item]]\nname = \"Exposure\"\nelement = [{ name = \"Value Abs\", "
                   "switch = true }]\n"));
    EXPECT_EQ(makeChannel().exposure(), -1.0);
}

TEST_F(Construction, GivesTheItemsOfTheDeviceBack) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const std::uint32_t before = alive().interfaces;
    makeChannel();
    EXPECT_EQ(alive().items, 0U);
    EXPECT_EQ(alive().interfaces, before + 3);
}

TEST_F(Construction, StartsWithTriggerModeOff) {
    loadRig(rigs::grey(rigs::trigger));
    CVideoChannel& channel = makeChannel();
    CHostText text;
    ASSERT_EQ(channel.StartAcquisition(text), 0);
    virtualCamerasUnplug("1A2B");
    EXPECT_EQ(waitFrame(channel).status, 8192U);
    virtualCamerasPlug("1A2B");
    EXPECT_EQ(waitInVain(channel).status, 4096U);
    EXPECT_EQ(state("1A2B", "Trigger", "Enable", "IVCDSwitchProperty"), "false");
}

}  // namespace
