// SPDX-License-Identifier: MIT
// Every call of the device-property interfaces that can fail, made to fail in turn:
// where its result code goes, and what is left behind.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::IsEmpty;

using FailingCodes = CPropertyTest;

const std::string fullCamera = camera(R"toml(
formats = ["Y800 (640x480)"]
framerates = [30.0]
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 255, value = 10 }
Auto.switch = false
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 30.0, value = 0.5 }
Value.switch = true
Auto.switch = false
"One Push".button = true
[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = false
Mode.strings = { choices = ["Edge", "Level"], value = "Edge" }
)toml");

const std::vector<std::int32_t> codes = {-2147467259, -2147024891, -1};

struct Call {
    const char* operation;
    const char* key;
};

TEST_F(FailingCodes, LeaveAGetAsTheyAre) {
    CPropertyHost host(fullCamera);
    const std::vector<Call> calls = {
        {"IVCDRangeProperty::getValue", "contrast value range"},
        {"IVCDRangeProperty::getRangeMin", "contrast value range min"},
        {"IVCDRangeProperty::getRangeMax", "contrast value range max"},
        {"IVCDAbsoluteValueProperty::getValue", "exposure value abs"},
        {"IVCDAbsoluteValueProperty::getRangeMin", "exposure value abs min"},
        {"IVCDAbsoluteValueProperty::getRangeMax", "exposure value abs max"},
        {"IVCDSwitchProperty::getSwitch", "exposure auto switch"},
        {"IVCDMapStringsProperty::getString", "trigger mode strings"}};
    const std::uint32_t interfaces = alive().interfaces;
    for (const Call& call : calls) {
        for (const std::int32_t code : codes) {
            failCallWith(code, call.operation);
            const CMemoryBalance balance;
            CHostText message;
            CHostText value;
            EXPECT_EQ(
                thrownCode([&] { host.channel().GetPropertyValue(message, call.key, value); }),
                code)
                << call.operation;
            EXPECT_TRUE(message.isUntouched()) << call.operation;
            EXPECT_TRUE(value.isUntouched()) << call.operation;
        }
        EXPECT_EQ(host.get(call.key).result, 0) << call.operation;
    }
    EXPECT_EQ(alive().interfaces, interfaces);
}

struct SetCall {
    const char* operation;
    std::uint32_t nth;
    const char* key;
    const char* value;
    const char* unchanged;
};

TEST_F(FailingCodes, MakeASetAnUnknownProperty) {
    CPropertyHost host(fullCamera);
    const std::vector<SetCall> calls = {
        {"IVCDSwitchProperty::getSwitch", 1, "contrast value range", "7", "10"},
        {"IVCDRangeProperty::getRangeMin", 1, "contrast value range", "7", "10"},
        {"IVCDRangeProperty::getRangeMax", 1, "contrast value range", "7", "10"},
        {"IVCDRangeProperty::setValue", 1, "contrast value range", "7", "10"},
        {"IVCDSwitchProperty::getSwitch", 1, "exposure value abs", "7", "0.500000"},
        {"IVCDAbsoluteValueProperty::getRangeMin", 1, "exposure value abs", "7", "0.500000"},
        {"IVCDAbsoluteValueProperty::getRangeMax", 1, "exposure value abs", "7", "0.500000"},
        {"IVCDAbsoluteValueProperty::setValue", 1, "exposure value abs", "7", "0.500000"},
        {"IVCDSwitchProperty::setSwitch", 1, "trigger enable switch", "true", "false"},
        {"IVCDMapStringsProperty::getStrings", 1, "trigger mode strings", "Level", "Edge"},
        {"IVCDTexts::getCount", 1, "trigger mode strings", "Level", "Edge"},
        {"IVCDTexts::getItem", 1, "trigger mode strings", "Level", "Edge"},
        {"IVCDTexts::getItem", 2, "trigger mode strings", "Level", "Edge"},
        {"IVCDMapStringsProperty::setString", 1, "trigger mode strings", "Level", "Edge"}};
    const std::uint32_t interfaces = alive().interfaces;
    for (const SetCall& call : calls) {
        for (const std::int32_t code : codes) {
            failCallWith(code, call.operation, call.nth);
            EXPECT_EQ(host.set(call.key, call.value),
                      refused("Unknown property \"" + std::string(call.key) + "\""))
                << call.operation;
            virtualCamerasClearFailures();
        }
        EXPECT_EQ(host.get(call.key), accepted(call.unchanged)) << call.operation;
        EXPECT_EQ(host.set(call.key, call.value), accepted()) << call.operation;
        EXPECT_EQ(host.set(call.key, call.unchanged), accepted()) << call.operation;
    }
    EXPECT_EQ(alive().interfaces, interfaces);
}

TEST_F(FailingCodes, AreNotAskedForByARefusedLimit) {
    CPropertyHost host(fullCamera);
    failCall("IVCDRangeProperty::getRangeMin", 1, 0);
    failCall("IVCDSwitchProperty::getSwitch", 1, 0);
    EXPECT_EQ(host.set("contrast value range min", "7"),
              refused("Minimum values can not be set! contrast value range min"));
}

TEST_F(FailingCodes, LeaveACommandAsTheyAre) {
    CPropertyHost host(fullCamera);
    for (const char* operation : {"IVCDSwitchProperty::getSwitch", "IVCDButtonProperty::push"}) {
        for (const std::int32_t code : codes) {
            failCallWith(code, operation);
            const CMemoryBalance balance;
            CHostText message;
            EXPECT_EQ(
                thrownCode([&] { host.channel().ExecuteCommand(message, "exposure one push"); }),
                code)
                << operation;
            EXPECT_TRUE(message.isUntouched());
        }
    }
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Exposure"), 0U);
    EXPECT_EQ(host.execute("exposure one push"), accepted());
}

struct BlockCall {
    const char* operation;
    std::uint32_t nth;
    std::size_t changesBefore;  // calls that the block had made on the device
};

TEST_F(FailingCodes, LeaveTheParameterBlockAsTheyAre) {
    // In the order of the block's calls; the failing write itself counts as made.
    const std::vector<BlockCall> calls = {
        {"IVCDRangeProperty::getRangeMin", 1, 0},
        {"IVCDRangeProperty::getRangeMax", 1, 0},
        {"IVCDSwitchProperty::getSwitch", 1, 0},  // contrast's automatic
        {"IVCDRangeProperty::getRangeMin", 2, 0},
        {"IVCDRangeProperty::getRangeMax", 2, 0},
        {"IVCDRangeProperty::setValue", 1, 1},
        {"IVCDSwitchProperty::setSwitch", 1, 2},  // exposure's automatic
        {"IVCDSwitchProperty::getSwitch", 2, 2},
        {"IVCDAbsoluteValueProperty::getRangeMin", 1, 2},
        {"IVCDAbsoluteValueProperty::getRangeMax", 1, 2},
        {"IVCDAbsoluteValueProperty::setValue", 1, 3},
        {"IVCDSwitchProperty::getSwitch", 3, 3},  // the trigger's mode
        {"IVCDSwitchProperty::setSwitch", 2, 4},
        {"IVCDSwitchProperty::setSwitch", 3, 5}};  // its polarity
    CameraParameterBlock parameters{};
    parameters.contrast = 0.5;
    parameters.exposure = 0.25;
    parameters.triggerEnable = 1;
    for (const BlockCall& call : calls) {
        CPropertyHost host(fullCamera);
        const std::uint32_t interfaces = alive().interfaces;
        for (const std::int32_t code : codes) {
            virtualCamerasClearFailures();
            ASSERT_EQ(host.set("trigger enable switch", "false"), accepted());
            failCallWith(code, call.operation, call.nth);
            host.forgetCalls();
            const CMemoryBalance balance;
            CHostText message;
            EXPECT_EQ(thrownCode([&] { host.channel().SetCameraParameters(message, &parameters); }),
                      code)
                << call.operation << call.nth;
            EXPECT_TRUE(message.isUntouched());
            EXPECT_EQ(host.changes().size(), call.changesBefore) << call.operation << call.nth;
        }
        EXPECT_EQ(alive().interfaces, interfaces) << call.operation << call.nth;
    }
}

TEST_F(FailingCodes, OfTheTriggersModeLeaveTheCameraLive) {
    CPropertyHost host(fullCamera);
    ASSERT_EQ(host.start(), accepted());
    CameraParameterBlock parameters{};
    parameters.triggerEnable = 1;
    failCallWith(-1, "IVCDSwitchProperty::setSwitch", 2);
    CHostText message;
    EXPECT_EQ(thrownCode([&] { host.channel().SetCameraParameters(message, &parameters); }), -1);
    EXPECT_EQ(alive().liveDevices, 1U);
}

// What one construction calls, each of which may fail.
const std::vector<const char*> buildingCalls = {
    "IVCDPropertyItems::getCount",      "IVCDPropertyItems::getItem",
    "IVCDPropertyItem::getCount",       "IVCDPropertyItem::getItem",
    "IVCDPropertyElement::getCount",    "IVCDPropertyElement::getItem",
    "IVCDPropertyItem::getName",        "IVCDPropertyElement::getName",
    "IVCDPropertyItem::getItemID",      "IVCDPropertyElement::getElementID",
    "IVCDRangeProperty::getInterfaceID"};

TEST_F(FailingCodes, OfTheTableBuildLeaveTheConstruction) {
    for (const char* operation : buildingCalls) {
        for (const std::int32_t code : codes) {
            loadRig(fullCamera);
            const VirtualCamerasAlive before = alive();
            failCallWith(code, operation);
            EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), code) << operation;
            virtualCamerasClearFailures();
            // Nothing of the half-made channel is left but the pixel format, which
            // shares no sink that was built after it.
            const VirtualCamerasAlive after = alive();
            EXPECT_EQ(after.grabbers, before.grabbers) << operation;
            EXPECT_EQ(after.openDevices, before.openDevices) << operation;
            EXPECT_EQ(after.listeners, before.listeners) << operation;
            EXPECT_EQ(after.sinks, before.sinks) << operation;
            EXPECT_EQ(after.items, before.items) << operation;
        }
    }
}

TEST_F(FailingCodes, OfTheFirstReadingLeaveNoReference) {
    for (const char* operation : buildingCalls) {
        loadRig(fullCamera);
        const std::uint32_t interfaces = alive().interfaces;
        const CMemoryBalance balance;
        // The first call of its kind: no setting is made yet.
        failCallWith(-1, operation);
        EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), -1) << operation;
        EXPECT_EQ(alive().interfaces, interfaces) << operation;
    }
}

TEST_F(FailingCodes, HalfwayThroughTheTableLeaveOnlyTheSettingsMade) {
    loadRig(fullCamera);
    const std::uint32_t before = alive().interfaces;
    // Contrast has its value and two limits by then, each with the automatic.
    failCallWith(-1, "IVCDPropertyElement::getItem", 2);
    EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), -1);
    EXPECT_EQ(references("Contrast", "Value", "IVCDRangeProperty"), 3);
    EXPECT_EQ(references("Contrast", "Auto", "IVCDSwitchProperty"), 3);
    EXPECT_EQ(references("Exposure", "Auto", "IVCDSwitchProperty"), 0);
    EXPECT_EQ(alive().interfaces - before, 6U);
}

TEST_F(FailingCodes, OfBindingAreNoFailureOfTheConstruction) {
    for (const char* operation : {"IVCDPropertyItems::findItem", "IVCDPropertyItem::findElement",
                                  "IVCDPropertyElement::QueryInterface"}) {
        loadRig(fullCamera);
        failCall(operation, 1, 0);
        EXPECT_EQ(thrownCode([] { const CPropertyHost host; }), 0) << operation;
    }
}

TEST_F(FailingCodes, ThatAreNotNegativeAreSuccess) {
    CPropertyHost host(fullCamera);
    failCallWith(1, "IVCDRangeProperty::setValue");
    EXPECT_EQ(host.set("contrast value range", "7"), accepted());
    failCallWith(1, "IVCDButtonProperty::push");
    EXPECT_EQ(host.execute("exposure one push"), accepted());
}

TEST_F(FailingCodes, LeaveALostDeviceReadable) {
    CPropertyHost host(fullCamera);
    ASSERT_EQ(virtualCamerasUnplug(cameraId), 1);
    // Fixed texts still read; the camera's own settings fail as the library says.
    EXPECT_EQ(host.get("feature_1"), accepted("contrast auto switch"));
    EXPECT_EQ(thrownCode([&] { host.get("contrast value range"); }), -2147467259);
    EXPECT_EQ(host.set("contrast value range", "7"),
              refused("Unknown property \"contrast value range\""));
    EXPECT_EQ(thrownCode([&] { host.execute("exposure one push"); }), -2147467259);
}

}  // namespace
}  // namespace property_tests
