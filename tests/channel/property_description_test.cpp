// SPDX-License-Identifier: MIT
// What the host is told about settings: names by index, kinds, choices, attributes.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyName = CPropertyTest;
using PropertyType = CPropertyTest;
using PropertyChoice = CPropertyTest;
using PropertyAttribute = CPropertyTest;

const std::string everything = camera(R"toml(
framerates = [60.0, 30.0]
channels = ["Composite"]
current_norm = "PAL"
[[camera.norm]]
name = "PAL"
formats = ["Y800 (768x576)", "RGB32 (768x576)", "Y800 (384x288)"]
[[camera.norm]]
name = "NTSC"
formats = ["Y800 (640x480)"]
[[camera.norm]]
name = "Void"
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 5 }
Auto.switch = true
"One Push".button = true
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0, max = 1.0, value = 0.5 }
[[camera.item]]
name = "Trigger"
Mode.strings = { choices = ["Edge", "Level"] }
Source_A.switch = true
[[camera.item]]
name = "BINNING Factor"
Value.range = { min = 1, max = 4, value = 2 }
[[camera.item]]
name = "Gain"
Minimum.switch = true
MaxiMal.switch = true
Amin.switch = true
Features.switch = true
Executed.switch = true
)toml");

Answer none() {
    return {1, untouched, ""};
}

TEST_F(PropertyName, ListsWhatTheHostIsToShow) {
    CPropertyHost host(everything);
    EXPECT_THAT(host.names(),
                ElementsAre("brightness auto switch", "brightness value range",
                            "exposure value abs", "framerate", "gain amin switch", "inputchannel",
                            "inputchannels", "pixelformat", "trigger mode strings", "videoformat",
                            "videoformats", "videonorm", "videonorms"));
}

TEST_F(PropertyName, EndsWithAnEmptyName) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.name(0), accepted("brightness auto switch"));
    EXPECT_EQ(host.name(12), accepted("videonorms"));
    EXPECT_EQ(host.name(13), none());
    EXPECT_EQ(host.name(1000000), none());
    EXPECT_EQ(host.name(2147483647), none());
}

TEST_F(PropertyName, HoldsTheLongestKey) {
    CPropertyHost host(camera("[[camera.item]]\nname = \"" + std::string(300, 'a') +
                              "\"\nValue.range = { min = 0, max = 10, value = 5 }\n"));
    EXPECT_EQ(host.name(0), accepted(std::string(254, 'a')));
}

TEST_F(PropertyName, OfANegativeIndexIsEmpty) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.name(-1), none());
    EXPECT_EQ(host.name(-2147483647 - 1), none());
}

TEST_F(PropertyName, OfAnEmptyTableIsEmpty) {
    CPropertyHost host(camera("properties = false\n"));
    EXPECT_EQ(host.name(0), none());
    EXPECT_EQ(host.name(-1), none());
}

TEST_F(PropertyName, WritesALineBreakToTheDebuggerForEveryName) {
    CPropertyHost host(everything);
    win32::reset();
    host.name(0);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n"));
    host.name(5);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n", "\n"));
    host.name(13);
    host.name(1000);
    host.name(-1);
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n", "\n"));
}

TEST_F(PropertyName, HidesKeysThatStillWork) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.get("binning factor value range"), accepted("2"));
    EXPECT_EQ(host.set("binning factor value range", "4"), accepted());
    EXPECT_EQ(host.get("binning factor value range"), accepted("4"));
    EXPECT_EQ(host.get("trigger source_a switch"), accepted("true"));
    EXPECT_EQ(host.get("gain minimum switch"), accepted("true"));
    EXPECT_EQ(host.get("gain maximal switch"), accepted("true"));
    EXPECT_EQ(host.get("gain features switch"), accepted("true"));
    EXPECT_EQ(host.get("gain executed switch"), accepted("true"));
}

TEST_F(PropertyName, NeedsNoBuffers) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.channel().GetPropertyName(nullptr, 0, nullptr), 0);
    EXPECT_EQ(host.channel().GetPropertyName(nullptr, 13, nullptr), 1);
}

TEST_F(PropertyName, AsksTheDeviceNothing) {
    CPropertyHost host(everything);
    host.forgetCalls();
    EXPECT_EQ(host.names().size(), 13U);
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyType, TellsChoicesTextsAndActionsByTheKeyAlone) {
    CPropertyHost host(everything);
    host.forgetCalls();
    EXPECT_EQ(host.type("brightness auto switch"), 1U);
    EXPECT_EQ(host.type("brightness auto switch1"), 1U);
    EXPECT_EQ(host.type("no such switch at all"), 1U);
    EXPECT_EQ(host.type(" switch"), 1U);
    EXPECT_EQ(host.type("videoformat"), 1U);
    EXPECT_EQ(host.type("videoformats"), 2U);
    EXPECT_EQ(host.type("videoformat_0"), 2U);
    EXPECT_EQ(host.type("videonorm"), 2U);
    EXPECT_EQ(host.type("inputchannel"), 2U);
    EXPECT_EQ(host.type("pixelformat"), 2U);
    EXPECT_EQ(host.type("framerate"), 2U);
    EXPECT_EQ(host.type("trigger mode strings"), 2U);
    EXPECT_EQ(host.type("brightness value range"), 2U);
    EXPECT_EQ(host.type("feature_1"), 2U);
    EXPECT_EQ(host.type("propertydialog"), 2U);
    EXPECT_EQ(host.type("brightness one push"), 2U);
    EXPECT_EQ(host.type("execute_1"), 4U);
    EXPECT_EQ(host.type("gain executed switch"), 4U);
    EXPECT_EQ(host.type("unheard of"), 2U);
    EXPECT_EQ(host.type(""), 2U);
    EXPECT_EQ(host.type(nullptr), 2U);
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyType, TakesTheKeyAsItIs) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.type("BRIGHTNESS AUTO SWITCH"), 2U);
    EXPECT_EQ(host.type("switch"), 2U);
    EXPECT_EQ(host.type("VideoFormat"), 2U);
    EXPECT_EQ(host.type("videoformat "), 2U);
    EXPECT_EQ(host.type("EXECUTE_1"), 2U);
}

TEST_F(PropertyType, NeedsNoPlace) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.channel().GetPropertyType(nullptr, "videoformat", nullptr), 0);
}

TEST_F(PropertyChoice, OfASwitchIsFalseOrTrue) {
    CPropertyHost host(everything);
    host.forgetCalls();
    EXPECT_EQ(host.choice("brightness auto switch", 0), accepted("false"));
    EXPECT_EQ(host.choice("brightness auto switch", 1), accepted("true"));
    EXPECT_EQ(host.choice("brightness auto switch", 2), refused(untouched));
    EXPECT_EQ(host.choice("brightness auto switch", -1), refused(untouched));
    EXPECT_EQ(host.choice("no such switch", 1), accepted("true"));
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyChoice, OfTheVideoFormatIsAFormatOfTheCurrentNorm) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.choice("videoformat", 0), accepted("Y800 (768x576)"));
    EXPECT_EQ(host.choice("videoformat", 1), accepted("RGB32 (768x576)"));
    EXPECT_EQ(host.choice("videoformat", 2), accepted("Y800 (384x288)"));
    EXPECT_EQ(host.choice("videoformat", 3), refused(untouched));
    ASSERT_EQ(host.set("videonorm", "NTSC"), accepted());
    EXPECT_EQ(host.choice("videoformat", 0), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.choice("videoformat", 1), refused(untouched));
}

TEST_F(PropertyChoice, OfANegativeFormatIndexIsOutOfRange) {
    CPropertyHost host(everything);
    EXPECT_EQ(outOfRangeText([&] { host.choice("videoformat", -1); }),
              "invalid vector<T> subscript");
    EXPECT_EQ(outOfRangeText([&] { host.choice("videoformat", -2147483647 - 1); }),
              "invalid vector<T> subscript");
}

TEST_F(PropertyChoice, OfNoFormatListIsNone) {
    CPropertyHost host(camera(""));
    EXPECT_EQ(host.choice("videoformat", 0), refused(untouched));
    EXPECT_EQ(host.choice("videoformat", 7), refused(untouched));
    EXPECT_EQ(outOfRangeText([&] { host.choice("videoformat", -1); }),
              "invalid vector<T> subscript");
}

TEST_F(PropertyChoice, OfAnEmptyFormatListIsNone) {
    CPropertyHost host(camera("formats = []\n"));
    EXPECT_EQ(host.choice("videoformat", 0), refused(untouched));
    EXPECT_EQ(outOfRangeText([&] { host.choice("videoformat", -1); }),
              "invalid vector<T> subscript");
}

TEST_F(PropertyChoice, IsOfferedForNothingElse) {
    CPropertyHost host(everything);
    host.forgetCalls();
    EXPECT_EQ(host.choice("trigger mode strings", 0),
              refused("Feature trigger mode strings Not Found"));
    EXPECT_EQ(host.choice("videonorm", 0), refused("Feature videonorm Not Found"));
    EXPECT_EQ(host.choice("inputchannel", 0), refused("Feature inputchannel Not Found"));
    EXPECT_EQ(host.choice("videoformats", 0), refused("Feature videoformats Not Found"));
    EXPECT_EQ(host.choice("VideoFormat", 0), refused("Feature VideoFormat Not Found"));
    EXPECT_EQ(host.choice("videoformat ", 0), refused("Feature videoformat  Not Found"));
    EXPECT_EQ(host.choice("AUTO SWITCH", -1), refused("Feature AUTO SWITCH Not Found"));
    EXPECT_EQ(host.choice("", 0), refused("Feature  Not Found"));
    EXPECT_EQ(host.choice(nullptr, 0), refused("Feature  Not Found"));
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyChoice, CutsTheMessageOfALongKey) {
    CPropertyHost host(everything);
    EXPECT_EQ(host.choice(std::string(300, 'k').c_str(), 0),
              refused("Feature " + std::string(247, 'k')));
}

TEST_F(PropertyChoice, CutsALongFormatNameByBytes) {
    const std::string name = "Y800 " + std::string(260, 'x') + " (640x480)";
    CPropertyHost host(camera("formats = [\"" + name + "\"]\n"));
    EXPECT_EQ(host.choice("videoformat", 0), accepted("Y800 " + std::string(250, 'x')));
}

TEST_F(PropertyChoice, NeedsNoBuffers) {
    CPropertyHost host(everything);
    CVideoChannel& channel = host.channel();
    EXPECT_EQ(channel.GetPropertyChoice(nullptr, "brightness auto switch", 0, nullptr), 0);
    EXPECT_EQ(channel.GetPropertyChoice(nullptr, "videoformat", 0, nullptr), 0);
    EXPECT_EQ(channel.GetPropertyChoice(nullptr, "other", 0, nullptr), 1);
}

TEST_F(PropertyChoice, ChangesNothing) {
    CPropertyHost host(everything);
    host.forgetCalls();
    host.choice("videoformat", 1);
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (384x288)"));
}

TEST_F(PropertyAttribute, IsAFixedTextForEveryKey) {
    CPropertyHost host(everything);
    host.forgetCalls();
    for (const char* key : {"framerate", "no such key", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(host.attribute(key, 1), accepted("No comment."));
        EXPECT_EQ(host.attribute(key, 2), accepted("True"));
        EXPECT_EQ(host.attribute(key, 3), accepted("True"));
        EXPECT_EQ(host.attribute(key, 0), accepted());
        EXPECT_EQ(host.attribute(key, 4), accepted());
        EXPECT_EQ(host.attribute(key, 0xFFFFFFFF), accepted());
    }
    EXPECT_EQ(host.callCount(), 0U);
    EXPECT_EQ(host.channel().GetPropertyAttribute(nullptr, nullptr, 1, nullptr), 0);
}

}  // namespace
}  // namespace property_tests
