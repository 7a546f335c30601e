// SPDX-License-Identifier: MIT
// Contrast, brightness, exposure and serial text as a channel reads them when it opens.
#include <cmath>
#include <limits>

#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using FirstReadings = CPropertyTest;

std::string range(const char* item, const char* limits) {
    return camera("[[camera.item]]\nname = \"" + std::string(item) + "\"\nValue.range = {" +
                  limits + "}\n");
}

TEST_F(FirstReadings, AreMinusOneForACameraWithoutTheSettings) {
    CPropertyHost host(camera(""));
    EXPECT_EQ(host.channel().contrast(), -1.0);
    EXPECT_EQ(host.channel().brightness(), -1.0);
    EXPECT_EQ(host.channel().exposure(), -1.0);
}

TEST_F(FirstReadings, AreMinusOneWithoutACollection) {
    CPropertyHost host(camera("properties = false\n"));
    EXPECT_EQ(host.channel().contrast(), -1.0);
    EXPECT_EQ(host.channel().brightness(), -1.0);
    EXPECT_EQ(host.channel().exposure(), -1.0);
}

TEST_F(FirstReadings, OfContrastAreAFractionOfItsRange) {
    CPropertyHost host(range("Contrast", "min = 0, max = 255, value = 51"));
    EXPECT_EQ(host.channel().contrast(), 0.2);
    EXPECT_EQ(host.channel().brightness(), -1.0);
}

TEST_F(FirstReadings, OfBrightnessAreAFractionOfItsRange) {
    CPropertyHost host(range("Brightness", "min = -100, max = 100, value = 50"));
    EXPECT_EQ(host.channel().brightness(), 0.75);
    EXPECT_EQ(host.channel().contrast(), -1.0);
}

TEST_F(FirstReadings, OfAnEmptyRangeAreWhatTheDivisionGives) {
    CPropertyHost none(range("Contrast", "min = 5, max = 5, value = 5"));
    EXPECT_TRUE(std::isnan(none.channel().contrast()));
    CPropertyHost above(range("Contrast", "min = 5, max = 5, value = 6"));
    EXPECT_EQ(above.channel().contrast(), std::numeric_limits<double>::infinity());
    CPropertyHost below(range("Contrast", "min = 5, max = 5, value = 4"));
    EXPECT_EQ(below.channel().contrast(), -std::numeric_limits<double>::infinity());
}

TEST_F(FirstReadings, OfTheWidestRangeDoNotWrap) {
    const auto contrastAt = [](const char* value) {
        CPropertyHost host(
            range("Contrast",
                  ("min = -2147483648, max = 2147483647, value = " + std::string(value)).c_str()));
        return host.channel().contrast();
    };
    EXPECT_EQ(contrastAt("2147483647"), 1.0);
    EXPECT_EQ(contrastAt("-2147483648"), 0.0);
    EXPECT_DOUBLE_EQ(contrastAt("0"), 0.50000000011641532);
}

TEST_F(FirstReadings, AreTakenInOrderAfterTheTables) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    EXPECT_THAT(library_log::invocations(
                    {"Grabber::isInputChannelAvailableWithCurDev", "IVCDRangeProperty::getRangeMin",
                     "IVCDRangeProperty::getValue", "IVCDAbsoluteValueProperty::getValue"}),
                ElementsAre("Grabber::isInputChannelAvailableWithCurDev()",
                            "IVCDRangeProperty::getRangeMin(Contrast,Value)",
                            "IVCDRangeProperty::getValue(Contrast,Value)",
                            "IVCDRangeProperty::getRangeMin(Brightness,Value)",
                            "IVCDRangeProperty::getValue(Brightness,Value)",
                            "IVCDAbsoluteValueProperty::getValue(Exposure,Value)"));
}

TEST_F(FirstReadings, FindTheItemByItsIdentifierNotItsName) {
    // The key is there, but the item with contrast's identifier is another.
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Contrast"
id = "{11111111-2222-3333-4444-555555555555}"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Contrast Two"
id = "{284C0E07-010B-45BF-8291-09D90A459B28}"
Value.range = { min = 0, max = 10, value = 1 }
)toml"));
    EXPECT_EQ(host.channel().contrast(), 0.1);
}

TEST_F(FirstReadings, AreZeroWhereTheKeyIsButNoItem) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Contrast"
id = "{11111111-2222-3333-4444-555555555555}"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Brightness"
Value.id = "{11111111-2222-3333-4444-555555555555}"
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    EXPECT_EQ(host.channel().contrast(), 0.0);
    EXPECT_EQ(host.channel().brightness(), 0.0);
}

TEST_F(FirstReadings, NeedTheKeyWhateverItemsThereAre) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Kontrast"
id = "{284C0E07-010B-45BF-8291-09D90A459B28}"
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    EXPECT_EQ(host.channel().contrast(), -1.0);
}

TEST_F(FirstReadings, ReadMinimumMaximumAndValueAndGiveTheRangeBack) {
    CPropertyHost host(range("Contrast", "min = 0, max = 255, value = 51"));
    EXPECT_THAT(
        library_log::invocations({"IVCDRangeProperty::getRangeMin",
                                  "IVCDRangeProperty::getRangeMax", "IVCDRangeProperty::getValue"}),
        ElementsAre("IVCDRangeProperty::getRangeMin(Contrast,Value)",
                    "IVCDRangeProperty::getRangeMax(Contrast,Value)",
                    "IVCDRangeProperty::getValue(Contrast,Value)"));
    EXPECT_EQ(references("Contrast", "Value", "IVCDRangeProperty"), 3);
}

TEST_F(FirstReadings, OfExposureAreTheAbsoluteValue) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.033333 }
)toml"));
    EXPECT_EQ(host.channel().exposure(), 0.033333);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch"}), IsEmpty());
}

TEST_F(FirstReadings, KeepTheAutomaticOfACameraWithoutAValueSwitch) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Auto.switch = true
)toml"));
    EXPECT_EQ(host.channel().exposure(), 0.5);
    EXPECT_EQ(host.get("exposure auto switch"), accepted("true"));
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch"}), IsEmpty());
}

TEST_F(FirstReadings, SwitchTheAutomaticOffForACameraWithAValueSwitch) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Value.switch = true
Auto.switch = true
)toml"));
    EXPECT_EQ(host.channel().exposure(), 0.5);
    EXPECT_EQ(host.get("exposure auto switch"), accepted("false"));
    EXPECT_EQ(host.get("exposure value switch"), accepted("true"));
    EXPECT_THAT(library_log::invocations(
                    {"IVCDSwitchProperty::setSwitch", "IVCDAbsoluteValueProperty::getValue"}),
                ElementsAre("IVCDSwitchProperty::setSwitch(Exposure,Auto,0)",
                            "IVCDAbsoluteValueProperty::getValue(Exposure,Value)"));
}

TEST_F(FirstReadings, WithoutAnAbsoluteExposureKeepTheAutomatic) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.range = { min = 0, max = 30, value = 5 }
Value.switch = true
Auto.switch = true
)toml"));
    EXPECT_EQ(host.channel().exposure(), -1.0);
    EXPECT_EQ(host.get("exposure auto switch"), accepted("true"));
}

TEST_F(FirstReadings, SkipAMissingAutomaticAndAddNoKey) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Value.switch = true
)toml"));
    EXPECT_EQ(host.channel().exposure(), 0.5);
    EXPECT_EQ(host.get("exposure auto switch"),
              refused("Unknown property \"exposure auto switch\""));
    EXPECT_EQ(host.get("exposure value switch"), accepted("true"));
}

TEST_F(FirstReadings, SkipUnboundSettings) {
    loadRig(camera(R"toml(
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Value.switch = true
Auto.switch = true
)toml"));
    failCall("IVCDPropertyElement::QueryInterface", 1, 0);
    CPropertyHost host;
    EXPECT_EQ(host.channel().exposure(), -1.0);
    EXPECT_EQ(host.channel().contrast(), 0.0);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch"}), IsEmpty());
}

TEST_F(FirstReadings, StayAsTheyWereWhenTheSettingChanges) {
    CPropertyHost host(range("Contrast", "min = 0, max = 10, value = 5"));
    ASSERT_EQ(host.set("contrast value range", "10"), accepted());
    EXPECT_EQ(host.channel().contrast(), 0.5);
}

TEST_F(FirstReadings, ThrowTheResultCodeOfAFailedReading) {
    for (const char* operation :
         {"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
          "IVCDRangeProperty::getValue"}) {
        for (const char* item : {"Contrast", "Brightness"}) {
            loadRig(range(item, "min = 0, max = 10, value = 5"));
            const std::uint32_t grabbers = alive().grabbers;
            failCall(operation);
            EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), -2147024891)
                << operation << " of " << item;
            EXPECT_EQ(alive().grabbers, grabbers);
            EXPECT_EQ(alive().openDevices, 0U);
            // Those of the three settings, which live on.
            EXPECT_EQ(references(item, "Value", "IVCDRangeProperty"), 3);
        }
    }
}

TEST_F(FirstReadings, ThrowTheResultCodeOfAFailedExposure) {
    for (const char* operation :
         {"IVCDSwitchProperty::setSwitch", "IVCDAbsoluteValueProperty::getValue"}) {
        loadRig(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Value.switch = true
Auto.switch = true
)toml"));
        failCall(operation);
        EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), -2147024891) << operation;
        EXPECT_EQ(alive().openDevices, 0U);
    }
}

TEST_F(FirstReadings, OfTheSerialNumberAreUpperCaseHexadecimal) {
    CPropertyHost host(camera(""));
    EXPECT_STREQ(host.channel().serialText(), "1A2B");
}

TEST_F(FirstReadings, OfTheSerialNumberHaveNoLeadingZeros) {
    const auto serialTextOf = [](const char* serial) {
        CPropertyHost host("[[camera]]\nname = \"Bench\"\nserial = \"" + std::string(serial) +
                           "\"\n");
        return std::string(host.channel().serialText());
    };
    EXPECT_EQ(serialTextOf("0000abcdef"), "ABCDEF");
    EXPECT_EQ(serialTextOf("0"), "0");
    EXPECT_EQ(serialTextOf("7FFFFFFFFFFFFFFF"), "7FFFFFFFFFFFFFFF");
    EXPECT_EQ(serialTextOf("FFFFFFFFFFFFFFFF"), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(serialTextOf("8000000000000000"), "8000000000000000");
}

TEST_F(FirstReadings, WithoutASerialNumberSaySo) {
    CPropertyHost none("[[camera]]\nname = \"Bench\"\n");
    EXPECT_STREQ(none.channel().serialText(), "n/a");
    CPropertyHost closed(camera("open = \"fail\"\n"));
    EXPECT_STREQ(closed.channel().serialText(), "n/a");
}

TEST_F(FirstReadings, AskTheOpenDeviceForItsSerialNumber) {
    CPropertyHost host(camera(""));
    const std::vector<std::string> calls = library_log::invocations(
        {"Grabber::getAcqSizeMaxY", "Grabber::getDev", "VideoCaptureDeviceItem::getSerialNumber",
         "Grabber::getAvailableVCDProperties"});
    const auto serial = std::find_if(calls.begin(), calls.end(), [](const std::string& call) {
        return call.find("getSerialNumber") != std::string::npos;
    });
    ASSERT_NE(serial, calls.end());
    ASSERT_GE(serial - calls.begin(), 2);
    EXPECT_EQ(*(serial - 1), "Grabber::getDev()");
    EXPECT_EQ(*(serial - 2), "Grabber::getAcqSizeMaxY()");
    EXPECT_EQ(*(serial + 1), "Grabber::getAvailableVCDProperties()");
}

}  // namespace
}  // namespace property_tests
