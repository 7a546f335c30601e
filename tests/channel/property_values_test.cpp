// SPDX-License-Identifier: MIT
// Integer and floating-point settings of the camera, and their limits.
#include <cmath>

#include "properties/camera_features.h"
#include "tests/channel/property_identifiers.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyRange = CPropertyTest;
using PropertyAbsolute = CPropertyTest;
using PropertyLimits = CPropertyTest;

const std::string plain = camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = -20, max = 100, value = 7 }
Value.abs = { min = -0.5, max = 30.25, value = 0.033333 }
)toml");

const std::string automatic = camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.range = { min = 0, max = 100, value = 7 }
Value.abs = { min = 0.0, max = 1.0, value = 0.25 }
Auto.switch = true
)toml");

constexpr const char* outsideRange = "gain value range must be within -20 and 100!";
constexpr const char* outsideAbsolute = "gain value abs must be within -0.500000 and 30.250000!";

TEST_F(PropertyRange, ReadsAsADecimalInteger) {
    CPropertyHost host(plain);
    EXPECT_EQ(host.get("gain value range"), accepted("7"));
    EXPECT_EQ(host.get("gain value range min"), accepted("-20"));
    EXPECT_EQ(host.get("gain value range max"), accepted("100"));
}

TEST_F(PropertyRange, MayBeSetToItsLimitsAndBetween) {
    CPropertyHost host(plain);
    host.forgetCalls();
    for (const char* value : {"-20", "100", "0", "99"}) {
        EXPECT_EQ(host.set("gain value range", value), accepted());
        EXPECT_EQ(host.get("gain value range"), accepted(value));
        EXPECT_EQ(deviceValue("Gain", "Value", "IVCDRangeProperty"), value);
    }
    EXPECT_THAT(host.changes(), ElementsAre("IVCDRangeProperty::setValue(Gain,Value,-20)",
                                            "IVCDRangeProperty::setValue(Gain,Value,100)",
                                            "IVCDRangeProperty::setValue(Gain,Value,0)",
                                            "IVCDRangeProperty::setValue(Gain,Value,99)"));
}

TEST_F(PropertyRange, IsRefusedOutsideItsLimits) {
    CPropertyHost host(plain);
    host.forgetCalls();
    for (const char* value :
         {"-21", "101", "2147483647", "-2147483648", "99999999999999999999", "-99999999999"}) {
        EXPECT_EQ(host.set("gain value range", value), refused(outsideRange)) << value;
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("gain value range"), accepted("7"));
    EXPECT_EQ(deviceValue("Gain", "Value", "IVCDRangeProperty"), "7");
}

TEST_F(PropertyRange, ReadsTheIntegerThatBeginsTheText) {
    CPropertyHost host(plain);
    const auto takes = [&host](const char* text) {
        EXPECT_EQ(host.set("gain value range", text), accepted()) << text;
        return host.get("gain value range").value;
    };
    EXPECT_EQ(takes("12abc"), "12");
    EXPECT_EQ(takes("abc"), "0");
    EXPECT_EQ(takes(" \t\r\n\v\f+5"), "5");
    EXPECT_EQ(takes("-3.9"), "-3");
    EXPECT_EQ(takes("1e1"), "1");
    EXPECT_EQ(takes("0x10"), "0");
    EXPECT_EQ(takes("007"), "7");
    EXPECT_EQ(takes(""), "0");
    EXPECT_EQ(takes("- 5"), "0");
    EXPECT_EQ(takes("+-5"), "0");
    EXPECT_EQ(takes("--5"), "0");
}

TEST_F(PropertyRange, SaturatesAtTheIntegerLimits) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = -2147483648, max = 2147483647, value = 0 }
)toml"));
    EXPECT_EQ(host.get("gain value range min"), accepted("-2147483648"));
    EXPECT_EQ(host.get("gain value range max"), accepted("2147483647"));
    EXPECT_EQ(host.set("gain value range", "99999999999999999999"), accepted());
    EXPECT_EQ(host.get("gain value range"), accepted("2147483647"));
    EXPECT_EQ(host.set("gain value range", "-99999999999999999999"), accepted());
    EXPECT_EQ(host.get("gain value range"), accepted("-2147483648"));
}

TEST_F(PropertyRange, WithLimitsTheWrongWayRoundTakesNothing) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = 10, max = -10, value = 0 }
)toml"));
    EXPECT_EQ(host.get("gain value range min"), accepted("10"));
    EXPECT_EQ(host.get("gain value range max"), accepted("-10"));
    for (const char* value : {"0", "10", "-10"}) {
        EXPECT_EQ(host.set("gain value range", value),
                  refused("gain value range must be within 10 and -10!"));
    }
}

TEST_F(PropertyRange, IsRefusedWhileTheAutomaticIsOn) {
    CPropertyHost host(automatic);
    host.forgetCalls();
    EXPECT_EQ(host.set("exposure value range", "5"),
              refused("exposure value range can not be set, while automatic is enabled. Use "
                      "\"exposure value range auto\" property and set to \"false\"!"));
    // Also for a value that would be refused anyway, and before the limits are read.
    EXPECT_EQ(host.set("exposure value range", "5000"),
              refused("exposure value range can not be set, while automatic is enabled. Use "
                      "\"exposure value range auto\" property and set to \"false\"!"));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_THAT(host.calls({"IVCDRangeProperty::getRangeMin"}), IsEmpty());
    EXPECT_EQ(deviceValue("Exposure", "Value", "IVCDRangeProperty"), "7");

    EXPECT_EQ(host.set("exposure auto switch", "false"), accepted());
    EXPECT_EQ(host.set("exposure value range", "5"), accepted());
    EXPECT_EQ(deviceValue("Exposure", "Value", "IVCDRangeProperty"), "5");
}

TEST_F(PropertyRange, IsReadWhileTheAutomaticIsOn) {
    CPropertyHost host(automatic);
    EXPECT_EQ(host.get("exposure value range"), accepted("7"));
    EXPECT_EQ(host.get("exposure value abs"), accepted("0.250000"));
}

TEST_F(PropertyRange, AsksTheAutomaticThenTheLimitsThenWrites) {
    CPropertyHost host(automatic);
    ASSERT_EQ(host.set("exposure auto switch", "false"), accepted());
    host.forgetCalls();
    ASSERT_EQ(host.set("exposure value range", "5"), accepted());
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::getSwitch", "IVCDRangeProperty::getRangeMin",
                            "IVCDRangeProperty::getRangeMax", "IVCDRangeProperty::setValue",
                            "IVCDRangeProperty::getValue"}),
                ElementsAre("IVCDSwitchProperty::getSwitch(Exposure,Auto)",
                            "IVCDRangeProperty::getRangeMin(Exposure,Value)",
                            "IVCDRangeProperty::getRangeMax(Exposure,Value)",
                            "IVCDRangeProperty::setValue(Exposure,Value,5)"));
}

TEST_F(PropertyRange, LimitsFollowTheDevice) {
    CPropertyHost host(plain);
    host.forgetCalls();
    host.get("gain value range min");
    host.get("gain value range max");
    EXPECT_THAT(host.calls({"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
                            "IVCDRangeProperty::getValue"}),
                ElementsAre("IVCDRangeProperty::getRangeMin(Gain,Value)",
                            "IVCDRangeProperty::getRangeMax(Gain,Value)"));
}

TEST_F(PropertyRange, CutsTheMessagesOfTheLongestNames) {
    const std::string element(243, 'x');
    const std::string key = "gain " + element + " range";
    ASSERT_EQ(key.size(), 254U);
    CPropertyHost host(camera("[[camera.item]]\nname = \"Gain\"\nAuto.switch = false\n" + element +
                              ".range = { min = 1, max = 10, value = 5 }\n"));
    EXPECT_EQ(host.set(key, "11"), refused(key + " "));
    EXPECT_EQ(host.set(key + " min", "1"),
              refused("Minimum values can not be set! " + key.substr(0, 224)));
    EXPECT_EQ(host.set(key + " max", "1"),
              refused("Maximum values can not be set! " + key.substr(0, 224)));
    ASSERT_EQ(host.set("gain auto switch", "true"), accepted());
    EXPECT_EQ(host.set(key, "5"), refused(key + " "));
}

TEST_F(PropertyAbsolute, ReadsWithSixDecimals) {
    CPropertyHost host(plain);
    EXPECT_EQ(host.get("gain value abs"), accepted("0.033333"));
    EXPECT_EQ(host.get("gain value abs min"), accepted("-0.500000"));
    EXPECT_EQ(host.get("gain value abs max"), accepted("30.250000"));
}

TEST_F(PropertyAbsolute, MayBeSetToItsLimitsAndBetween) {
    CPropertyHost host(plain);
    host.forgetCalls();
    for (const char* value : {"-0.5", "30.25", "0.01"}) {
        EXPECT_EQ(host.set("gain value abs", value), accepted());
        EXPECT_EQ(deviceValue("Gain", "Value", "IVCDAbsoluteValueProperty"), value);
    }
    EXPECT_THAT(host.changes(),
                ElementsAre("IVCDAbsoluteValueProperty::setValue(Gain,Value,-0.5)",
                            "IVCDAbsoluteValueProperty::setValue(Gain,Value,30.25)",
                            "IVCDAbsoluteValueProperty::setValue(Gain,Value,0.01)"));
}

TEST_F(PropertyAbsolute, IsRefusedOutsideItsLimits) {
    CPropertyHost host(plain);
    host.forgetCalls();
    for (const char* value : {"-0.500001", "30.250001", "1e300", "-1e300", "1e999", "-1e999"}) {
        EXPECT_EQ(host.set("gain value abs", value), refused(outsideAbsolute)) << value;
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("gain value abs"), accepted("0.033333"));
}

TEST_F(PropertyAbsolute, ReadsTheNumberThatBeginsTheText) {
    CPropertyHost host(plain);
    const auto takes = [&host](const char* text) {
        EXPECT_EQ(host.set("gain value abs", text), accepted()) << text;
        return host.get("gain value abs").value;
    };
    EXPECT_EQ(takes("12.5abc"), "12.500000");
    EXPECT_EQ(takes("abc"), "0.000000");
    EXPECT_EQ(takes(" \t+.25"), "0.250000");
    EXPECT_EQ(takes("2."), "2.000000");
    EXPECT_EQ(takes("."), "0.000000");
    EXPECT_EQ(takes("1.5e1"), "15.000000");
    EXPECT_EQ(takes("15E-1"), "1.500000");
    EXPECT_EQ(takes("3e"), "3.000000");
    EXPECT_EQ(takes("3e+"), "3.000000");
    EXPECT_EQ(takes("2,75"), "2.000000");
    EXPECT_EQ(takes("0x10"), "0.000000");
    EXPECT_EQ(takes("inf"), "0.000000");
    EXPECT_EQ(takes("nan"), "0.000000");
    EXPECT_EQ(takes("1e-999"), "0.000000");
    EXPECT_EQ(takes(""), "0.000000");
    EXPECT_EQ(takes("-0.25"), "-0.250000");
}

TEST_F(PropertyAbsolute, IsRefusedWhileTheAutomaticIsOn) {
    CPropertyHost host(automatic);
    host.forgetCalls();
    EXPECT_EQ(host.set("exposure value abs", "0.5"),
              refused("exposure value abs can not be set, while automatic is enabled. Use "
                      "\"exposure value abs auto\" property and set to \"false\"!"));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(deviceValue("Exposure", "Value", "IVCDAbsoluteValueProperty"), "0.25");
    EXPECT_EQ(host.set("exposure auto switch", "false"), accepted());
    EXPECT_EQ(host.set("exposure value abs", "0.5"), accepted());
    EXPECT_EQ(deviceValue("Exposure", "Value", "IVCDAbsoluteValueProperty"), "0.5");
}

TEST_F(PropertyAbsolute, WritesLargeNumbersWholeOrCut) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.abs = { min = -1e308, max = 1e308, value = 1e20 }
)toml"));
    EXPECT_EQ(host.get("gain value abs"), accepted("100000000000000000000.000000"));
    const Answer cut = host.get("gain value abs max");
    EXPECT_EQ(cut.result, 0);
    EXPECT_EQ(cut.value.size(), 255U);
    EXPECT_EQ(cut.value.substr(0, 20), "10000000000000000109");
    // The message ends within the lower limit.
    const Answer refusal = host.set("gain value abs", "1e309");
    EXPECT_EQ(refusal.result, 1);
    EXPECT_EQ(refusal.message.substr(0, 36), "gain value abs must be within -10000");
    EXPECT_EQ(refusal.message.size(), 255U);
}

TEST_F(PropertyLimits, AreNeverSet) {
    CPropertyHost host(plain);
    host.forgetCalls();
    for (const char* value : {"0", "-20", "", "abc"}) {
        EXPECT_EQ(host.set("gain value range min", value),
                  refused("Minimum values can not be set! gain value range min"));
        EXPECT_EQ(host.set("gain value range max", value),
                  refused("Maximum values can not be set! gain value range max"));
        EXPECT_EQ(host.set("gain value abs min", value),
                  refused("Minimum values can not be set! gain value abs min"));
        EXPECT_EQ(host.set("gain value abs max", value),
                  refused("Maximum values can not be set! gain value abs max"));
    }
    EXPECT_EQ(host.callCount(), 0U);
    EXPECT_EQ(host.get("gain value range min"), accepted("-20"));
    EXPECT_EQ(host.get("gain value abs max"), accepted("30.250000"));
}

constexpr GUID gainItem = {
    0x284C0E06, 0x010B, 0x45BF, {0x82, 0x91, 0x09, 0xD9, 0x0A, 0x45, 0x9B, 0x28}};

// An item with the identifier of brightness.
const std::string brightness = camera(R"toml(
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 4 }
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
Auto.switch = false
)toml");

TEST_F(PropertyRange, OffersItsValueAsANumber) {
    COpenGrabber grabber(brightness);
    CVCDPropertyValue value(gainItem, "value", grabber.get(), valueElement);
    ASSERT_TRUE(value.isBound());
    EXPECT_EQ(value.getNumber(), 4);
    EXPECT_EQ(value.setNumber(9), 0);
    EXPECT_EQ(value.getNumber(), 9);
    failCall("IVCDRangeProperty::setValue");
    EXPECT_EQ(thrownCode([&] { value.setNumber(3); }), -2147024891);
    failCall("IVCDRangeProperty::getValue");
    EXPECT_EQ(thrownCode([&] { value.getNumber(); }), -2147024891);
    EXPECT_EQ(value.getNumber(), 9);
}

TEST_F(PropertyRange, LimitsKeepTheNumberOfTheValue) {
    COpenGrabber grabber(brightness);
    CVCDPropertyValueMin minimum(gainItem, "minimum", grabber.get(), valueElement);
    CVCDPropertyValueMax maximum(gainItem, "maximum", grabber.get(), valueElement);
    EXPECT_EQ(minimum.getNumber(), 4);
    EXPECT_EQ(minimum.setNumber(5), 0);
    EXPECT_EQ(maximum.getNumber(), 5);
    EXPECT_EQ(maximum.setNumber(6), 0);
    EXPECT_EQ(minimum.getNumber(), 6);
}

TEST_F(PropertyAbsolute, OffersItsValueAsANumber) {
    COpenGrabber grabber(brightness);
    CVCDPropertyAbsValue value(gainItem, "value", grabber.get(), valueElement);
    CVCDPropertyAbsValueMin minimum(gainItem, "minimum", grabber.get(), valueElement);
    CVCDPropertyAbsValueMax maximum(gainItem, "maximum", grabber.get(), valueElement);
    EXPECT_EQ(value.getNumber(), 0.5);
    EXPECT_EQ(value.setNumber(0.75), 0);
    EXPECT_EQ(minimum.getNumber(), 0.75);
    EXPECT_EQ(maximum.setNumber(0.25), 0);
    EXPECT_EQ(value.getNumber(), 0.25);
    failCall("IVCDAbsoluteValueProperty::setValue");
    EXPECT_EQ(thrownCode([&] { value.setNumber(0.1); }), -2147024891);
    failCall("IVCDAbsoluteValueProperty::getValue");
    EXPECT_EQ(thrownCode([&] { value.getNumber(); }), -2147024891);
}

TEST_F(PropertyRange, GivesItsReferencesBackWithItself) {
    COpenGrabber grabber(brightness);
    {
        const CVCDPropertyValue value(gainItem, "value", grabber.get(), valueElement);
        EXPECT_EQ(references("Brightness", "Value", "IVCDRangeProperty"), 1);
        EXPECT_EQ(references("Brightness", "Auto", "IVCDSwitchProperty"), 1);
        const CVCDPropertyAuto toggle(gainItem, "auto", grabber.get(), autoElement);
        EXPECT_EQ(references("Brightness", "Auto", "IVCDSwitchProperty"), 2);
    }
    EXPECT_EQ(references("Brightness", "Value", "IVCDRangeProperty"), 0);
    EXPECT_EQ(references("Brightness", "Auto", "IVCDSwitchProperty"), 0);
}

}  // namespace
}  // namespace property_tests
