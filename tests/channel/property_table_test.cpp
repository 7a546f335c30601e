// SPDX-License-Identifier: MIT
// Which keys a camera gets, in which tables, and the lists that name them.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using PropertyTable = CPropertyTest;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string bare = camera("");

TEST_F(PropertyTable, KnowsItsSettingsAndItsCommandsByTheirWholeKeys) {
    COpenGrabber grabber(camera("framerates = [30.0]\n"));
    CPropertyPixelFormat pixelFormat("Pixelformat", grabber.get(), {});
    CPropertyTables tables;
    tables.buildPropertyTable(grabber.get(), pixelFormat);
    EXPECT_TRUE(tables.hasProperty("framerate"));
    EXPECT_FALSE(tables.hasProperty("framerat"));
    EXPECT_FALSE(tables.hasProperty("propertydialog"));
    EXPECT_TRUE(tables.hasExecute("propertydialog"));
    EXPECT_FALSE(tables.hasExecute("propertydialogs"));
    EXPECT_FALSE(tables.hasExecute("framerate"));
}

TEST_F(PropertyTable, StaysEmptyWithoutACollection) {
    CPropertyHost host(
        camera("properties = false\n"
               "formats = [\"Y800 (640x480)\"]\nframerates = [30.0]\n"));
    EXPECT_EQ(host.get("pixelformat"), refused("Unknown property \"pixelformat\""));
    EXPECT_EQ(host.get("videoformat"), refused("Unknown property \"videoformat\""));
    EXPECT_EQ(host.get("framerate"), refused("Unknown property \"framerate\""));
    EXPECT_EQ(host.get("feature_1"), refused("Unknown property \"feature_1\""));
    EXPECT_EQ(host.get("execute_1"), refused("Unknown property \"execute_1\""));
    EXPECT_EQ(host.execute("propertydialog"), refused("Unknown command \"propertydialog\""));
    EXPECT_THAT(win32::debuggerTexts(), IsEmpty());
    EXPECT_THAT(library_log::invocations({"Grabber::isFrameRateListAvailable",
                                          "Grabber::getAvailableVideoNorms_", "Grabber::setFPS",
                                          "Grabber::isInputChannelAvailableWithCurDev"}),
                IsEmpty());
}

TEST_F(PropertyTable, OfACameraWithNothingHoldsThePixelFormatAndTheLists) {
    CPropertyHost host(bare);
    EXPECT_EQ(host.get("feature_1"), accepted("pixelformat"));
    EXPECT_EQ(host.get("feature_2"), accepted(""));
    EXPECT_EQ(host.get("feature_3"), refused("Unknown property \"feature_3\""));
    EXPECT_EQ(host.get("execute_1"), accepted("propertydialog"));
    EXPECT_EQ(host.get("execute_2"), accepted(""));
    EXPECT_EQ(host.get("execute_3"), refused("Unknown property \"execute_3\""));
    EXPECT_EQ(host.get("videoformats"), refused("Unknown property \"videoformats\""));
    EXPECT_EQ(host.get("videoformat_0"), refused("Unknown property \"videoformat_0\""));
    EXPECT_EQ(host.get("videonorm"), refused("Unknown property \"videonorm\""));
    EXPECT_EQ(host.get("inputchannel"), refused("Unknown property \"inputchannel\""));
}

TEST_F(PropertyTable, ListsNumberFromOne) {
    CPropertyHost host(bare);
    EXPECT_EQ(host.get("feature_0"), refused("Unknown property \"feature_0\""));
    EXPECT_EQ(host.get("execute_0"), refused("Unknown property \"execute_0\""));
}

TEST_F(PropertyTable, HoldsEveryFixedKeyOfACameraThatOffersAll) {
    CPropertyHost host(camera(R"toml(
framerates = [30.0, 15.0]
channels = ["Composite", "S-Video"]
[[camera.norm]]
name = "PAL_B"
formats = ["Y800 (768x576)", "RGB32 (768x576)"]
)toml"));
    EXPECT_THAT(
        host.list("feature_"),
        ElementsAre("framerate", "inputchannel", "inputchannels", "pixelformat", "videoformat",
                    "videoformat_0", "videoformat_1", "videoformats", "videonorm", "videonorms"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("propertydialog"));
}

TEST_F(PropertyTable, HoldsNoFormatKeysForAnEmptyList) {
    CPropertyHost host(camera("formats = []\n"));
    EXPECT_THAT(host.list("feature_"), ElementsAre("pixelformat"));
}

TEST_F(PropertyTable, HoldsNoNormKeysForAnEmptyList) {
    CPropertyHost host(camera("formats = [\"Y800 (640x480)\"]\nnorm = []\n"));
    EXPECT_THAT(host.list("feature_"),
                ElementsAre("pixelformat", "videoformat", "videoformat_0", "videoformats"));
}

TEST_F(PropertyTable, HoldsTheFormatsOfTheCurrentNorm) {
    CPropertyHost host(camera(R"toml(
current_norm = "NTSC_M"
[[camera.norm]]
name = "PAL_B"
formats = ["Y800 (768x576)", "RGB32 (768x576)", "UYVY (768x576)"]
[[camera.norm]]
name = "NTSC_M"
formats = ["Y800 (640x480)"]
)toml"));
    EXPECT_EQ(host.get("videoformat_0"), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.get("videoformat_1"), refused("Unknown property \"videoformat_1\""));
}

TEST_F(PropertyTable, TellsTheKindOfEachInterfaceByTheEndOfTheKey) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 10, value = 5 }
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
Value.switch = true
Value.strings = { choices = ["low", "high"] }
Value.unknown = true
"One Push".button = true
)toml"));
    EXPECT_THAT(host.list("feature_"),
                ElementsAre("gain value abs", "gain value abs max", "gain value abs min",
                            "gain value range", "gain value range max", "gain value range min",
                            "gain value strings", "gain value switch", "pixelformat"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("gain one push", "propertydialog"));
}

TEST_F(PropertyTable, OrdersCommandsByKey) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "White Balance"
"One Push".button = true
[[camera.item]]
name = "Focus"
"One Push".button = true
)toml"));
    EXPECT_EQ(host.get("execute_1"), accepted("focus one push"));
    EXPECT_EQ(host.get("execute_2"), accepted("propertydialog"));
    EXPECT_EQ(host.get("execute_3"), accepted("white balance one push"));
    EXPECT_EQ(host.get("execute_4"), accepted(""));
}

TEST_F(PropertyTable, OrdersFeaturesByTheBytesOfTheKey) {
    std::string formats = "formats = [";
    for (int i = 0; i < 11; ++i) {
        formats += "\"Y800 (640x48" + std::to_string(i % 10) + ")\",";
    }
    CPropertyHost host(camera(formats + R"toml(]
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    EXPECT_THAT(host.list("feature_"),
                ElementsAre("brightness value range", "brightness value range max",
                            "brightness value range min", "pixelformat", "videoformat",
                            "videoformat_0", "videoformat_1", "videoformat_10", "videoformat_2",
                            "videoformat_3", "videoformat_4", "videoformat_5", "videoformat_6",
                            "videoformat_7", "videoformat_8", "videoformat_9", "videoformats"));
}

TEST_F(PropertyTable, RefusesToSetAListEntry) {
    CPropertyHost host(bare);
    host.forgetCalls();
    for (const char* key : {"feature_1", "feature_2", "execute_1", "execute_2"}) {
        EXPECT_EQ(host.set(key, "other"), refused("This property is read only.")) << key;
    }
    EXPECT_EQ(host.get("feature_1"), accepted("pixelformat"));
    EXPECT_EQ(host.get("execute_1"), accepted("propertydialog"));
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyTable, WritesALineBreakForEveryInterfaceAndThenTheHeader) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 10, value = 5 }
Value.unknown = true
Auto.switch = true
"One Push".button = true
)toml"));
    EXPECT_THAT(win32::debuggerTexts(),
                ElementsAre("\n", "\n", "\n", "\n", "\n\nAll Properties:\n"));
}

TEST_F(PropertyTable, WritesTheHeaderAloneForACameraWithoutItems) {
    CPropertyHost host(bare);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n\nAll Properties:\n"));
}

TEST_F(PropertyTable, GivesAnUnknownInterfaceNoKey) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.unknown = "{99B44940-BFE1-4083-ADA1-BE703F4B8E07}"
)toml"));
    EXPECT_THAT(host.list("feature_"), ElementsAre("pixelformat"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("propertydialog"));
    EXPECT_EQ(host.get("gain value ukn"), refused("Unknown property \"gain value ukn\""));
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n", "\n\nAll Properties:\n"));
}

TEST_F(PropertyTable, KnowsAnInterfaceByItsWholeIdentifier) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
A.unknown = "{99B44940-BFE1-4083-ADA1-BE703F4B8E02}"
B.unknown = "{99B44940-BFE1-4083-ADA1-BE703F4B8E09}"
C.unknown = "{99B44940-BFE1-4083-ADA1-BE713F4B8E03}"
D.unknown = "{99B44941-BFE1-4083-ADA1-BE703F4B8E04}"
E.unknown = "{99B44940-BFE1-4083-ADA1-BE703F4B8D05}"
)toml"));
    EXPECT_THAT(host.list("feature_"), ElementsAre("pixelformat"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("propertydialog"));
    EXPECT_EQ(win32::debuggerTexts().size(), 6U);
}

TEST_F(PropertyTable, PassesOverMembersThatAreNotThere) {
    for (const char* operation : {"IVCDPropertyItems::getItem", "IVCDPropertyItem::getItem",
                                  "IVCDPropertyElement::getItem"}) {
        loadRig(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.switch = true
[[camera.item]]
name = "Focus"
Value.switch = true
)toml"));
        emptyCall(operation);
        CPropertyHost host;
        EXPECT_THAT(host.list("feature_"), ElementsAre("focus value switch", "pixelformat"))
            << operation;
    }
}

TEST_F(PropertyTable, GivesItemsAndElementsWithoutInterfacesNoKey) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Hollow"
[[camera.item]]
name = "Shell"
[[camera.item.element]]
name = "Value"
)toml"));
    EXPECT_THAT(host.list("feature_"), ElementsAre("pixelformat"));
}

TEST_F(PropertyTable, KeepsItsKeysWhenTheDeviceIsLost) {
    CPropertyHost host(camera("formats = [\"Y800 (640x480)\"]\nframerates = [30.0]\n"));
    ASSERT_EQ(virtualCamerasUnplug(cameraId), 1);
    EXPECT_THAT(host.list("feature_"), ElementsAre("framerate", "pixelformat", "videoformat",
                                                   "videoformat_0", "videoformats"));
}

TEST_F(PropertyTable, ServesTheChannelsOwnPixelFormat) {
    CPropertyHost host(bare);
    EXPECT_EQ(host.set("pixelformat", "rgb24"), accepted());
    ImageInfo image{};
    EXPECT_EQ(host.imageInfo(&image), done());
    EXPECT_EQ(image.pixelType, 7U);
}

TEST_F(PropertyTable, AsksTheDeviceInTheOrderOfTheKeys) {
    CPropertyHost host(camera(R"toml(
formats = ["Y800 (640x480)"]
framerates = [30.0]
channels = ["Composite"]
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Focus"
Value.switch = false
)toml"));
    EXPECT_THAT(
        library_log::invocations(
            {"IVCDPropertyItems::getItem", "IVCDPropertyItem::getItem",
             "IVCDPropertyElement::getItem", "Grabber::isFrameRateListAvailable", "Grabber::setFPS",
             "Grabber::getAvailableVideoNorms_", "Grabber::isInputChannelAvailableWithCurDev"}),
        ElementsAre(
            "IVCDPropertyItems::getItem(1)", "IVCDPropertyItems::getItem(2)",
            "IVCDPropertyItem::getItem(Gain,1)", "IVCDPropertyElement::getItem(Gain,Value,1)",
            "IVCDPropertyItem::getItem(Focus,1)", "IVCDPropertyElement::getItem(Focus,Value,1)",
            "Grabber::isFrameRateListAvailable()", "Grabber::setFPS(10000)",
            "Grabber::getAvailableVideoNorms_()", "Grabber::isInputChannelAvailableWithCurDev()"));
}

TEST_F(PropertyTable, LeavesNoReferencesBeyondThoseOfTheSettings) {
    const std::uint32_t before = alive().interfaces;
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.range = { min = 0, max = 10, value = 5 }
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
Value.strings = { choices = ["low"] }
Value.unknown = true
Auto.switch = true
"One Push".button = true
)toml"));
    // A value, its two limits.
    EXPECT_EQ(references("Exposure", "Value", "IVCDRangeProperty"), 3);
    EXPECT_EQ(references("Exposure", "Value", "IVCDAbsoluteValueProperty"), 3);
    EXPECT_EQ(references("Exposure", "Value", "IVCDMapStringsProperty"), 1);
    // Its own setting, the six of the values, and the command.
    EXPECT_EQ(references("Exposure", "Auto", "IVCDSwitchProperty"), 8);
    EXPECT_EQ(references("Exposure", "One Push", "IVCDButtonProperty"), 1);
    EXPECT_EQ(alive().interfaces - before, 16U);
}

TEST_F(PropertyTable, LeavesItsSettingsBehindWhenTheChannelGoes) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Exposure"
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    host.close();
    EXPECT_EQ(references("Exposure", "Value", "IVCDRangeProperty"), 3);
}

}  // namespace
}  // namespace property_tests
