// SPDX-License-Identifier: MIT
// The host's block of camera parameters, applied in one call.
#include <limits>

#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using CameraParameters = CPropertyTest;

const std::string blockCamera = camera(R"toml(
formats = ["Y800 (1280x960)"]
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 255, value = 10 }
[[camera.item]]
name = "Brightness"
Value.range = { min = -100, max = 100, value = 0 }
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Auto.switch = true
[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = false
)toml");

// A block that changes nothing in `blockCamera` but what every block writes.
CameraParameterBlock block() {
    CameraParameterBlock parameters{};
    parameters.exposure = 0.25;
    parameters.contrast = 0.5;
    parameters.brightness = 0.5;
    parameters.roiWidth = 1280;
    parameters.roiHeight = 960;
    return parameters;
}

TEST_F(CameraParameters, AreAppliedInTheirOrder) {
    CPropertyHost host(blockCamera);
    CameraParameterBlock parameters = block();
    parameters.triggerEnable = 1;
    parameters.triggerPolarity = 1;
    host.forgetCalls();
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_THAT(host.changes(),
                ElementsAre("IVCDRangeProperty::setValue(Contrast,Value,127)",
                            "IVCDRangeProperty::setValue(Brightness,Value,0)",
                            "IVCDSwitchProperty::setSwitch(Exposure,Auto,0)",
                            "IVCDAbsoluteValueProperty::setValue(Exposure,Value,0.25)",
                            "IVCDSwitchProperty::setSwitch(Trigger,Enable,-1)",
                            "IVCDSwitchProperty::setSwitch(Trigger,Polarity,-1)"));
}

TEST_F(CameraParameters, ReadMinimumThenMaximumOfARange) {
    CPropertyHost host(blockCamera);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    const std::vector<std::string> calls =
        host.calls({"IVCDRangeProperty::getRangeMin", "IVCDRangeProperty::getRangeMax",
                    "IVCDRangeProperty::setValue"});
    ASSERT_GE(calls.size(), 5U);
    // Once for the fraction, and again by the setting itself.
    EXPECT_THAT(std::vector<std::string>(calls.begin(), calls.begin() + 5),
                ElementsAre("IVCDRangeProperty::getRangeMin(Contrast,Value)",
                            "IVCDRangeProperty::getRangeMax(Contrast,Value)",
                            "IVCDRangeProperty::getRangeMin(Contrast,Value)",
                            "IVCDRangeProperty::getRangeMax(Contrast,Value)",
                            "IVCDRangeProperty::setValue(Contrast,Value,127)"));
}

TEST_F(CameraParameters, TurnFractionsIntoValuesOfTheRange) {
    CPropertyHost host(blockCamera);
    const auto contrastAt = [&host](double fraction) {
        CameraParameterBlock parameters = block();
        parameters.contrast = fraction;
        EXPECT_EQ(host.parameters(parameters), accepted());
        return host.get("contrast value range").value;
    };
    EXPECT_EQ(contrastAt(0.0), "0");
    EXPECT_EQ(contrastAt(0.5), "127");
    EXPECT_EQ(contrastAt(1.0), "255");
    EXPECT_EQ(contrastAt(0.2), "51");
    EXPECT_EQ(contrastAt(0.999), "254");
    const auto brightnessAt = [&host](double fraction) {
        CameraParameterBlock parameters = block();
        parameters.brightness = fraction;
        EXPECT_EQ(host.parameters(parameters), accepted());
        return host.get("brightness value range").value;
    };
    EXPECT_EQ(brightnessAt(0.0), "-100");
    EXPECT_EQ(brightnessAt(0.5), "0");
    EXPECT_EQ(brightnessAt(1.0), "100");
    // Truncated before the minimum is added: 1.8 steps are 1, not rounded down from -98.2.
    EXPECT_EQ(brightnessAt(0.009), "-99");
}

TEST_F(CameraParameters, LeaveFractionsOutsideTheRangeToTheSetting) {
    CPropertyHost host(blockCamera);
    CameraParameterBlock parameters = block();
    ASSERT_EQ(host.parameters(parameters), accepted());
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double fraction : {1.5, -0.5, 1e300, -1e300, infinity, -infinity}) {
        parameters.contrast = fraction;
        parameters.brightness = fraction;
        host.forgetCalls();
        EXPECT_EQ(host.parameters(parameters), accepted());
        EXPECT_THAT(host.calls({"IVCDRangeProperty::setValue"}), IsEmpty()) << fraction;
    }
    EXPECT_EQ(host.get("contrast value range"), accepted("127"));
    // A fraction just outside that truncates onto the limit is inside.
    parameters.contrast = -0.003;
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_EQ(host.get("contrast value range"), accepted("0"));
}

TEST_F(CameraParameters, TakeTheLowestIntegerForWhatFitsNone) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Contrast"
Value.range = { min = -2147483648, max = 0, value = -1 }
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 2147483647, value = 1 }
)toml"));
    CameraParameterBlock parameters = block();
    // The difference wraps to the lowest integer; half of it comes off the minimum,
    // which wraps as well.
    parameters.contrast = 0.5;
    parameters.brightness = std::numeric_limits<double>::quiet_NaN();
    host.forgetCalls();
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_THAT(host.calls({"IVCDRangeProperty::setValue"}), IsEmpty());
    // Not a number becomes -2147483648, which is outside.
    EXPECT_EQ(host.get("brightness value range"), accepted("1"));
    parameters.contrast = -0.5;
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_EQ(host.get("contrast value range"), accepted("-1073741824"));
    parameters.brightness = 0.5;
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_EQ(host.get("brightness value range"), accepted("1073741823"));
    parameters.contrast = 1.0;
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_EQ(host.get("contrast value range"), accepted("0"));
}

TEST_F(CameraParameters, OfARangeWithoutItsInterfaceAreDropped) {
    loadRig(blockCamera);
    // Contrast's value, minimum and maximum.
    failCall("IVCDPropertyElement::QueryInterface", 1, 3);
    CPropertyHost host;
    ASSERT_EQ(host.get("contrast value range min").result, 1);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.calls({"IVCDRangeProperty::setValue"}),
                ElementsAre("IVCDRangeProperty::setValue(Brightness,Value,0)"));
}

TEST_F(CameraParameters, OfARangeWhoseMinimumCannotBeReadAreDropped) {
    loadRig(blockCamera);
    failCall("IVCDPropertyElement::QueryInterface", 5, 1);
    CPropertyHost host;
    ASSERT_EQ(host.get("brightness value range min").result, 1);
    ASSERT_EQ(host.get("brightness value range max").result, 0);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.calls({"IVCDRangeProperty::setValue"}),
                ElementsAre("IVCDRangeProperty::setValue(Contrast,Value,127)"));
}

TEST_F(CameraParameters, TakeAMaximumThatCannotBeReadAsZero) {
    loadRig(blockCamera);
    // Contrast makes three of these calls, brightness the next three.
    failCall("IVCDPropertyElement::QueryInterface", 6, 1);
    CPropertyHost host;
    ASSERT_EQ(host.get("brightness value range min").result, 0);
    ASSERT_EQ(host.get("brightness value range max").result, 1);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.calls({"IVCDRangeProperty::setValue"}),
                ElementsAre("IVCDRangeProperty::setValue(Contrast,Value,127)",
                            "IVCDRangeProperty::setValue(Brightness,Value,-50)"));
}

TEST_F(CameraParameters, OfARangeHeldByItsAutomaticAreDropped) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 255, value = 10 }
Auto.switch = true
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("contrast value range"), accepted("10"));
}

TEST_F(CameraParameters, WriteTheExposureWithSixDecimals) {
    CPropertyHost host(blockCamera);
    const auto exposureOf = [&host](double exposure) {
        CameraParameterBlock parameters = block();
        parameters.exposure = exposure;
        EXPECT_EQ(host.parameters(parameters), accepted());
        return deviceValue("Exposure", "Value", "IVCDAbsoluteValueProperty");
    };
    EXPECT_EQ(exposureOf(0.0333333333), "0.033333");
    EXPECT_EQ(exposureOf(29.9999999), "30");
    EXPECT_EQ(exposureOf(0.0000004), "0");
}

TEST_F(CameraParameters, CutTheExposureAtTwentyCharacters) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 1e30, value = 0.5 }
)toml"));
    CameraParameterBlock parameters = block();
    parameters.exposure = 1.23456789e23;
    EXPECT_EQ(host.parameters(parameters), accepted());
    // Twenty digits are left of "123456789000000003637248.000000", and read again.
    EXPECT_EQ(host.get("exposure value abs"), accepted("12345678900000000000.000000"));
}

TEST_F(CameraParameters, DropAnExposureOutsideItsLimits) {
    CPropertyHost host(blockCamera);
    for (const double exposure : {-1.0, 30.000001, -1e300}) {
        CameraParameterBlock parameters = block();
        parameters.exposure = exposure;
        EXPECT_EQ(host.parameters(parameters), accepted());
        EXPECT_EQ(host.get("exposure value abs"), accepted("0.500000")) << exposure;
    }
    // The automatic is off all the same.
    EXPECT_EQ(host.get("exposure auto switch"), accepted("false"));
}

TEST_F(CameraParameters, ReadAnExposureThatIsNoDigitsAsZero) {
    CPropertyHost host(blockCamera);
    for (const double exposure :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        CameraParameterBlock parameters = block();
        ASSERT_EQ(host.parameters(parameters), accepted());
        parameters.exposure = exposure;
        EXPECT_EQ(host.parameters(parameters), accepted());
        EXPECT_EQ(host.get("exposure value abs"), accepted("0.000000")) << exposure;
    }
}

TEST_F(CameraParameters, LeaveTheAutomaticAloneWithoutAnAbsoluteExposure) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.range = { min = 0, max = 10, value = 5 }
Auto.switch = true
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("exposure auto switch"), accepted("true"));
}

TEST_F(CameraParameters, SetTheExposureOfACameraWithoutAutomatic) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_THAT(host.changes(),
                ElementsAre("IVCDAbsoluteValueProperty::setValue(Exposure,Value,0.25)"));
}

TEST_F(CameraParameters, OfACameraWithoutAnySettingDoNothing) {
    CPropertyHost host(camera(""));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block()), accepted());
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(CameraParameters, NeedABlock) {
    CPropertyHost host(blockCamera);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(nullptr), accepted());
    EXPECT_EQ(host.channel().SetCameraParameters(nullptr, nullptr), 0);
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(CameraParameters, ReadTheBlockAtItsOffsetsAndWriteItNever) {
    CPropertyHost host(blockCamera);
    CameraParameterBlock parameters;
    std::memset(&parameters, 0x5A, sizeof(parameters));
    auto* bytes = reinterpret_cast<unsigned char*>(&parameters);
    const auto place = [bytes](std::size_t offset, auto value) {
        std::memcpy(bytes + offset, &value, sizeof(value));
    };
    place(8, 0.125);
    place(16, 1.0);
    place(24, 0.0);
    place(36, std::int32_t{1});
    place(40, std::int32_t{1});
    place(44, std::int32_t{0});
    place(48, std::int32_t{0});
    place(52, std::int32_t{640});
    place(56, std::int32_t{480});
    const CameraParameterBlock before = parameters;
    EXPECT_EQ(host.parameters(parameters), accepted());
    EXPECT_EQ(std::memcmp(&parameters, &before, sizeof(parameters)), 0);
    EXPECT_EQ(host.get("exposure value abs"), accepted("0.125000"));
    EXPECT_EQ(host.get("contrast value range"), accepted("255"));
    EXPECT_EQ(host.get("brightness value range"), accepted("-100"));
    EXPECT_EQ(host.get("trigger enable switch"), accepted("true"));
    EXPECT_EQ(host.get("trigger polarity switch"), accepted("true"));
}

TEST_F(CameraParameters, KeepTheRegionToThemselves) {
    CPropertyHost host(blockCamera);
    const std::int32_t highest = 2147483647;
    const std::int32_t lowest = -2147483647 - 1;
    struct Region {
        std::int32_t left, top, width, height;
    };
    // Within, clipped, negative, and sums that wrap.
    const std::vector<Region> regions = {{0, 0, 640, 480},
                                         {100, 100, 2000, 2000},
                                         {-50, -50, 100, 100},
                                         {highest, highest, highest, highest},
                                         {lowest, lowest, lowest, lowest},
                                         {lowest, lowest, highest, highest}};
    for (const Region& region : regions) {
        CameraParameterBlock parameters = block();
        parameters.roiLeft = region.left;
        parameters.roiTop = region.top;
        parameters.roiWidth = region.width;
        parameters.roiHeight = region.height;
        host.forgetCalls();
        EXPECT_EQ(host.parameters(parameters), accepted());
        // What every block writes, and nothing about the region.
        EXPECT_EQ(host.changes().size(), 5U);
        ImageInfo image{};
        EXPECT_EQ(host.imageInfo(&image), done());
        EXPECT_EQ(image.regionLeft, 0);
        EXPECT_EQ(image.regionTop, 0);
        EXPECT_EQ(image.regionWidth, 1280);
        EXPECT_EQ(image.regionHeight, 960);
    }
}

}  // namespace
}  // namespace property_tests
