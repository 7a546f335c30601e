// SPDX-License-Identifier: MIT
// Trigger mode and polarity in the block of camera parameters, and live video
// around their change.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TriggerParameters = CPropertyTest;

std::string trigger(const char* enabled) {
    return camera(
        "formats = [\"Y800 (640x480)\"]\n[[camera.item]]\nname = \"Trigger\"\n"
        "Enable.switch = " +
        std::string(enabled) + "\nPolarity.switch = false\n");
}

CameraParameterBlock block(std::int32_t enable, std::int32_t polarity) {
    CameraParameterBlock parameters{};
    parameters.triggerEnable = enable;
    parameters.triggerPolarity = polarity;
    return parameters;
}

// One wait that finds the device lost, restores it, and then times out.
void waitThroughRestore(CPropertyHost& host) {
    ASSERT_EQ(virtualCamerasUnplug(cameraId), 1);
    ASSERT_EQ(virtualCamerasPlug(cameraId), 1);
    // Back in time, but the adapter still learns of the loss.
    refuseCall("Grabber::isDevValid");
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    EXPECT_EQ(host.wait(), noFrame());
}

constexpr const char* enableOn = "IVCDSwitchProperty::setSwitch(Trigger,Enable,-1)";
constexpr const char* enableOff = "IVCDSwitchProperty::setSwitch(Trigger,Enable,0)";
constexpr const char* polarityOn = "IVCDSwitchProperty::setSwitch(Trigger,Polarity,-1)";
constexpr const char* polarityOff = "IVCDSwitchProperty::setSwitch(Trigger,Polarity,0)";

TEST_F(TriggerParameters, ChangeTheModeOnlyWhenItDiffers) {
    CPropertyHost host(trigger("false"));
    const auto changesOf = [&host](std::int32_t enable) {
        host.forgetCalls();
        EXPECT_EQ(host.parameters(block(enable, 0)), accepted());
        return host.changes();
    };
    EXPECT_THAT(changesOf(0), ElementsAre(polarityOff));
    EXPECT_THAT(changesOf(1), ElementsAre(enableOn, polarityOff));
    EXPECT_THAT(changesOf(1), ElementsAre(polarityOff));
    EXPECT_THAT(changesOf(0), ElementsAre(enableOff, polarityOff));
    EXPECT_THAT(changesOf(0), ElementsAre(polarityOff));
}

TEST_F(TriggerParameters, WithAnyOtherNumberChangeNoMode) {
    for (const char* enabled : {"false", "true"}) {
        CPropertyHost host(trigger(enabled));
        for (const std::int32_t enable : {2, -1, 256, 2147483647}) {
            host.forgetCalls();
            EXPECT_EQ(host.parameters(block(enable, 0)), accepted());
            EXPECT_THAT(host.changes(), ElementsAre(polarityOff)) << enable;
        }
        EXPECT_EQ(host.get("trigger enable switch"), accepted(enabled));
    }
}

TEST_F(TriggerParameters, StopAndStartLiveVideoAroundTheChangeOfMode) {
    CPropertyHost host(trigger("false"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::stopLive()", enableOn,
                                            "Grabber::startLive(false)", polarityOn));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(0, 0)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::stopLive()", enableOff,
                                            "Grabber::startLive(false)", polarityOff));
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(TriggerParameters, KeepLiveVideoRunningWhereTheModeStays) {
    CPropertyHost host(trigger("true"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre(polarityOn));
}

TEST_F(TriggerParameters, StartNoLiveVideoThatDidNotRun) {
    CPropertyHost host(trigger("false"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 0)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre(enableOn, polarityOff));
    EXPECT_EQ(alive().liveDevices, 0U);
}

TEST_F(TriggerParameters, IgnoreHowLiveVideoTakesTheChange) {
    CPropertyHost host(trigger("false"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    refuseCall("Grabber::stopLive");
    refuseCall("Grabber::startLive");
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::stopLive()", enableOn,
                                            "Grabber::startLive(false)", polarityOn));
}

TEST_F(TriggerParameters, WriteThePolarityEveryTime) {
    CPropertyHost host(trigger("false"));
    const auto changesOf = [&host](std::int32_t polarity) {
        host.forgetCalls();
        EXPECT_EQ(host.parameters(block(0, polarity)), accepted());
        return host.changes();
    };
    EXPECT_THAT(changesOf(1), ElementsAre(polarityOn));
    EXPECT_THAT(changesOf(1), ElementsAre(polarityOn));
    EXPECT_THAT(changesOf(0), ElementsAre(polarityOff));
    EXPECT_THAT(changesOf(2), ElementsAre(polarityOff));
    EXPECT_THAT(changesOf(-1), ElementsAre(polarityOff));
}

TEST_F(TriggerParameters, WithoutAnEnableSwitchSkipThePolarity) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Trigger"
Polarity.switch = false
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_EQ(host.callCount(), 0U);
    EXPECT_EQ(host.get("trigger polarity switch"), accepted("false"));
}

TEST_F(TriggerParameters, WithoutAPolaritySwitchSetTheModeAlone) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Trigger"
Enable.switch = false
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre(enableOn));
}

TEST_F(TriggerParameters, OfAnUnboundEnableSwitchChangeNoMode) {
    loadRig(trigger("false"));
    failCall("IVCDPropertyElement::QueryInterface", 1, 1);
    CPropertyHost host;
    ASSERT_EQ(host.get("trigger enable switch").result, 1);
    host.forgetCalls();
    EXPECT_EQ(host.parameters(block(1, 1)), accepted());
    EXPECT_THAT(host.changes(), ElementsAre(polarityOn));
}

TEST_F(TriggerParameters, DecideAlsoAfterARestoreWhetherToTrigger) {
    // The request is remembered as any number but zero, whatever it switches.
    CPropertyHost host(trigger("false"));
    ASSERT_EQ(host.start(), accepted());
    ASSERT_EQ(host.parameters(block(2, 0)), accepted());
    ASSERT_EQ(host.get("trigger enable switch"), accepted("false"));
    host.forgetCalls();
    waitThroughRestore(host);
    EXPECT_THAT(
        host.calls({"Grabber::openDev", "IVCDSwitchProperty::setSwitch", "Grabber::startLive"}),
        ElementsAre("Grabber::openDev(Bench)", enableOn, "Grabber::startLive(false)"));
}

TEST_F(TriggerParameters, AreAskedForAlsoByABlockThatThrows) {
    CPropertyHost host(trigger("false") +
                       "[[camera.item]]\nname = \"Contrast\"\n"
                       "Value.range = { min = 0, max = 255, value = 51 }\n");
    ASSERT_EQ(host.start(), accepted());
    failCall("IVCDRangeProperty::setValue");
    EXPECT_EQ(thrownCode([&] { host.parameters(block(1, 0)); }), accessDenied);
    ASSERT_EQ(host.get("trigger enable switch"), accepted("false"));
    host.forgetCalls();
    waitThroughRestore(host);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch"}), ElementsAre(enableOn));
}

TEST_F(TriggerParameters, WithoutTheModeRestoreUntriggered) {
    CPropertyHost host(trigger("false"));
    ASSERT_EQ(host.start(), accepted());
    ASSERT_EQ(host.parameters(block(1, 0)), accepted());
    ASSERT_EQ(host.parameters(block(0, 0)), accepted());
    host.forgetCalls();
    waitThroughRestore(host);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch", "Grabber::startLive"}),
                ElementsAre("Grabber::startLive(false)"));
}

TEST_F(TriggerParameters, StartUnset) {
    CPropertyHost host(trigger("true"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    waitThroughRestore(host);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch"}), IsEmpty());
}

TEST_F(TriggerParameters, SkipTheModeAtARestoreWithAnUnboundSwitch) {
    loadRig(trigger("false"));
    failCall("IVCDPropertyElement::QueryInterface", 1, 1);
    CPropertyHost host;
    ASSERT_EQ(host.get("trigger enable switch").result, 1);
    ASSERT_EQ(host.start(), accepted());
    ASSERT_EQ(host.parameters(block(1, 0)), accepted());
    host.forgetCalls();
    waitThroughRestore(host);
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::setSwitch", "Grabber::startLive"}),
                ElementsAre("Grabber::startLive(false)"));
}

TEST_F(TriggerParameters, SkipTheModeAtARestoreWithoutTheSwitch) {
    CPropertyHost host(camera("formats = [\"Y800 (640x480)\"]\n"));
    ASSERT_EQ(host.start(), accepted());
    ASSERT_EQ(host.parameters(block(1, 0)), accepted());
    waitThroughRestore(host);
    EXPECT_EQ(host.get("trigger enable switch").result, 1);
    EXPECT_THAT(host.list("feature_"),
                ElementsAre("pixelformat", "videoformat", "videoformat_0", "videoformats"));
}

}  // namespace
}  // namespace property_tests
