// SPDX-License-Identifier: MIT
// What making a channel does to its device, and the facts that it keeps.
#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/support/one_channel.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t notInstalled = -2147220991;  // 0x80040201

class Construction : public CGreyCamera {
protected:
    static constexpr const char* noDevice = "No valid video capture device selected.";

    void expectNoReadings() const {
        EXPECT_EQ(channel().contrast(), -1.0);
        EXPECT_EQ(channel().brightness(), -1.0);
        EXPECT_EQ(channel().exposure(), -1.0);
    }
};

TEST_F(Construction, CallsTheLibraryInItsFixedOrder) {
    openRecorded(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
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
    openRecorded(rigs::grey(std::string(rigs::exposureWithValueSwitch) +
                            rigs::range("Brightness", 0, 100, 25) +
                            rigs::range("Contrast", 0, 255, 51)));
    EXPECT_THAT(
        library_log::lines({"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
                            "IVCDRangeProperty::getValue", "IVCDSwitchProperty::setSwitch",
                            "IVCDAbsoluteValueProperty::getValue"}),
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
    openRecorded();
    EXPECT_THAT(library_log::lines({"Grabber::addListener", "Grabber::openDev",
                                    "Grabber::setOverlayBitmapPathPosition"}),
                ElementsAre("Grabber::addListener(4294967295) -> true",
                            "Grabber::openDev(SIM Mono 23) -> true",
                            "Grabber::setOverlayBitmapPathPosition(0) -> true"));
}

TEST_F(Construction, IgnoresFailuresOfTheListenerTheOverlayAndTheSink) {
    for (const char* operation : {"Grabber::addListener", "Grabber::setOverlayBitmapPathPosition",
                                  "Grabber::setSinkType", "Grabber::setVideoFormat"}) {
        refuseCall(operation);
    }
    const CVideoChannel& channel = open();
    EXPECT_STREQ(channel.serialText(), "1A2B");
    EXPECT_EQ(channel.width(), 8);
}

TEST_F(Construction, MakesOneUnnamedManualResetEventThatIsNotSignalled) {
    openRecorded();
    EXPECT_THAT(win32Calls({"CreateEventA", "CreateEventW"}),
                ElementsAre("CreateEventA(1, 0, null)"));
    EXPECT_EQ(win32::calls().back().name, "CreateEventA");
}

TEST_F(Construction, TouchesNeitherComNorFiles) {
    openRecorded(rigs::grey(rigs::trigger));
    EXPECT_THAT(win32Calls({"CoInitializeEx", "CoUninitialize", "OleInitialize", "MessageBoxW",
                            "LoadLibraryExW", "SetEvent", "WaitForSingleObject"}),
                IsEmpty());
}

TEST_F(Construction, KeepsNameSizeAndSerialNumber) {
    const CVideoChannel& channel =
        open(rigs::camera("SIM Wide 3", "DEADBEEF01", "\"Y800 (16x2)\""));
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
    EXPECT_STREQ(open(0).serialText(), "1A2B");
    EXPECT_STREQ(open(1).serialText(), "0");
    EXPECT_STREQ(open(2).serialText(), "FFFFFFFFFFFFFFFF");
    EXPECT_STREQ(open(3).serialText(), "n/a");
}

TEST_F(Construction, ReadsTheSerialNumberOfTheOpenDevice) {
    refuseCall("VideoCaptureDeviceItem::getSerialNumber");
    EXPECT_STREQ(open().serialText(), "n/a");
}

TEST_F(Construction, CutsTheDeviceNameTo253Characters) {
    loadRig(rigs::camera(std::string(253, 'a'), "1", "\"Y800 (8x4)\"") +
            rigs::camera(std::string(254, 'b'), "2", "\"Y800 (8x4)\""));
    EXPECT_EQ(open(0).deviceName(), std::string(253, 'a'));
    EXPECT_EQ(open(1).deviceName(), std::string(253, 'b'));
}

TEST_F(Construction, MakesAChannelOfADeviceThatDoesNotOpen) {
    open(rigs::grey("open = \"fail\""));
    EXPECT_STREQ(channel().deviceName(), "SIM Mono 23");
    EXPECT_STREQ(channel().serialText(), "n/a");
    expectNoReadings();
    EXPECT_EQ(start(), refused(noDevice));
    EXPECT_EQ(stop(), refused(noDevice));
    ImageInfo image{};
    EXPECT_EQ(imageInfo(&image), deviceLost(noDevice));
}

TEST_F(Construction, TakesContrastAndBrightnessAsFractionsOfTheirRanges) {
    const CVideoChannel& channel = open(
        rigs::grey(rigs::range("Contrast", 0, 255, 51) + rigs::range("Brightness", -100, 100, 50)));
    EXPECT_DOUBLE_EQ(channel.contrast(), 0.2);
    EXPECT_DOUBLE_EQ(channel.brightness(), 0.75);
}

TEST_F(Construction, HasMinusOneForMissingReadings) {
    open();
    expectNoReadings();
}

TEST_F(Construction, HasMinusOneForADeviceWithoutProperties) {
    open(rigs::grey("properties = false"));
    expectNoReadings();
}

TEST_F(Construction, ReadsMinimumMaximumAndValueOncePerFraction) {
    openRecorded(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    EXPECT_THAT(library_log::operations({"IVCDRangeProperty::"}),
                ElementsAre("IVCDRangeProperty::getInterfaceID", "IVCDRangeProperty::getRangeMin",
                            "IVCDRangeProperty::getRangeMax", "IVCDRangeProperty::getValue"));
    // The settings keep theirs: value, minimum and maximum.
    EXPECT_EQ(references("Contrast", "Value", "IVCDRangeProperty"), 3);
}

TEST_F(Construction, HasZeroWhereTheKeyIsThereButNotTheItem) {
    constexpr std::string_view other = "{01020304-0506-0708-090A-0B0C0D0E0F10}";
    open(rigs::grey(rigs::range("Contrast", 0, 255, 51) + "id = \"" + std::string(other) + "\"\n" +
                    rigs::range("Brightness", 0, 255, 51) + "id = \"{01020304-0506-" +
                    "0708-090A-0B0C0D0E0F11}\"\n"));
    EXPECT_EQ(get("contrast value range"), accepted("51"));
    EXPECT_EQ(channel().contrast(), 0.0);
    EXPECT_EQ(channel().brightness(), 0.0);
}

TEST_F(Construction, DividesLikeIeeeWhereTheLimitsAreEqual) {
    const CVideoChannel& channel =
        open(rigs::grey(rigs::range("Contrast", 7, 7, 7) + rigs::range("Brightness", 7, 7, 9)));
    EXPECT_TRUE(std::isnan(channel.contrast()));
    EXPECT_EQ(channel.brightness(), std::numeric_limits<double>::infinity());
}

TEST_F(Construction, TakesTheWidestRangeWithoutOverflow) {
    open(
        rigs::grey("[[camera.item]]\nname = \"Contrast\"\nValue.range = { min = -2147483648, "
                   "max = 2147483647, value = 2147483647 }\n"));
    EXPECT_DOUBLE_EQ(channel().contrast(), 1.0);
}

TEST_F(Construction, ThrowsAFailingResultCodeOfEachReading) {
    for (const char* operation :
         {"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
          "IVCDRangeProperty::getValue"}) {
        loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
        failCallWith(notInstalled, operation);
        EXPECT_EQ(thrownCode([this] { open(); }), notInstalled) << operation;
        EXPECT_EQ(alive().grabbers, 0U);
        EXPECT_EQ(alive().items, 0U);
    }
}

TEST_F(Construction, SwitchesTheAutomaticOffWhereTheExposureValueHasASwitch) {
    const CVideoChannel& channel = open(rigs::grey(rigs::exposureWithValueSwitch));
    EXPECT_EQ(deviceValue("Exposure", "Auto", "IVCDSwitchProperty"), "false");
    EXPECT_EQ(deviceValue("Exposure", "Value", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.04);
}

TEST_F(Construction, KeepsTheAutomaticWhereTheExposureValueHasNoSwitch) {
    const CVideoChannel& channel = open(rigs::grey(rigs::exposure));
    EXPECT_EQ(deviceValue("Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel.exposure(), 0.04);
}

TEST_F(Construction, KeepsTheAutomaticWithoutAnAbsoluteExposure) {
    const CVideoChannel& channel =
        open(rigs::grey("[[camera.item]]\nname = \"Exposure\"\nValue.switch = true\n"
                        "Auto.switch = true\n"));
    EXPECT_EQ(deviceValue("Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_EQ(channel.exposure(), -1.0);
}

TEST_F(Construction, SkipsAMissingAutomaticAndAddsNoKeyForIt) {
    open(
        rigs::grey("[[camera.item]]\nname = \"Exposure\"\nValue.switch = true\n"
                   "Value.abs = { min = 0.0, max = 1.0, value = 0.5 }\n"));
    EXPECT_DOUBLE_EQ(channel().exposure(), 0.5);
    EXPECT_EQ(get("exposure auto switch"), refused("Unknown property \"exposure auto switch\""));
}

TEST_F(Construction, SkipsAnAutomaticThatIsNotBound) {
    loadRig(rigs::grey(rigs::exposureWithValueSwitch));
    // The third binding of the device's properties, the automatic's, finds nothing.
    refuseCall("IVCDPropertyItems::findItem", 5);
    open();
    EXPECT_EQ(get("exposure auto switch"),
              refused("exposure auto switch property is not available!"));
    EXPECT_EQ(deviceValue("Exposure", "Auto", "IVCDSwitchProperty"), "true");
    EXPECT_DOUBLE_EQ(channel().exposure(), 0.04);
}

TEST_F(Construction, HasMinusOneForAnExposureThatIsNotBound) {
    loadRig(rigs::grey(rigs::exposure));
    refuseCall("IVCDPropertyItems::findItem");
    open();
    EXPECT_EQ(get("exposure value abs"), refused("exposure value abs property is not available!"));
    EXPECT_EQ(channel().exposure(), -1.0);
}

TEST_F(Construction, ReadsAnExposureOfAnotherKindOfItemAsMinusOne) {
    // A switch whose name makes the key of the absolute value.
    open(
        rigs::grey("[[camera.item]]\nname = \"Exposure\"\nelement = [{ name = \"Value Abs\", "
                   "switch = true }]\n"));
    EXPECT_EQ(channel().exposure(), -1.0);
}

TEST_F(Construction, GivesTheItemsOfTheDeviceBack) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    const std::uint32_t before = alive().interfaces;
    open();
    EXPECT_EQ(alive().items, 0U);
    EXPECT_EQ(alive().interfaces, before + 3);
}

TEST_F(Construction, StartsWithTriggerModeOff) {
    openLive(rigs::grey(rigs::trigger));
    unplug();
    EXPECT_EQ(wait().word, 0x2000U);
    plug();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(deviceValue("Trigger", "Enable", "IVCDSwitchProperty"), "false");
}

}  // namespace
