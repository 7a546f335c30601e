// SPDX-License-Identifier: MIT
// How keys are made from the names of items and elements, and kept apart.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using PropertyKeyNames = CPropertyTest;
using testing::ElementsAre;

TEST_F(PropertyKeyNames, JoinItemAndElementWithOneBlankAndLowerBoth) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "WHITE Balance"
[[camera.item.element]]
name = "Value  Red"
range = { min = 0, max = 10, value = 5 }
)toml"));
    EXPECT_EQ(host.get("feature_2"), accepted("white balance value  red range"));
    EXPECT_EQ(host.get("white balance value  red range"), accepted("5"));
}

TEST_F(PropertyKeyNames, AreUtf8AndLoweredInAsciiOnly) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "SCHÄRFE Ω"
Value.switch = true
)toml"));
    EXPECT_EQ(host.get("feature_2"), accepted("schÄrfe Ω value switch"));
    EXPECT_EQ(host.get("schÄrfe Ω value switch"), accepted("true"));
    EXPECT_EQ(host.get("SCHÄRFE Ω VALUE SWITCH"), accepted("true"));
    EXPECT_EQ(host.get("schärfe ω value switch"),
              refused("Unknown property \"schärfe ω value switch\""));
}

TEST_F(PropertyKeyNames, CountUpWithoutASeparatorWhenTaken) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10, value = 1 }
[[camera.item]]
name = "BRIGHTNESS"
Value.range = { min = 0, max = 20, value = 2 }
[[camera.item]]
name = "brightness"
Value.range = { min = 0, max = 30, value = 3 }
)toml"));
    EXPECT_THAT(host.list("feature_"),
                ElementsAre("brightness value range", "brightness value range max",
                            "brightness value range min", "brightness value range1",
                            "brightness value range1 max", "brightness value range1 min",
                            "brightness value range2", "brightness value range2 max",
                            "brightness value range2 min", "pixelformat"));
    EXPECT_EQ(host.get("brightness value range"), accepted("1"));
    EXPECT_EQ(host.get("brightness value range1"), accepted("2"));
    EXPECT_EQ(host.get("brightness value range2"), accepted("3"));
    EXPECT_EQ(host.get("brightness value range max"), accepted("10"));
    EXPECT_EQ(host.get("brightness value range1 max"), accepted("20"));
    EXPECT_EQ(host.get("brightness value range2 max"), accepted("30"));
}

TEST_F(PropertyKeyNames, CountUpForElementsThatDifferInCase) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Trigger"
Enable.switch = true
ENABLE.switch = false
[[camera.item]]
name = "Mode"
Value.abs = { min = 0.0, max = 1.0, value = 0.25 }
VALUE.abs = { min = 0.0, max = 1.0, value = 0.75 }
Value.strings = { choices = ["a"] }
VALUE.strings = { choices = ["b"] }
)toml"));
    EXPECT_EQ(host.get("trigger enable switch"), accepted("true"));
    EXPECT_EQ(host.get("trigger enable switch1"), accepted("false"));
    EXPECT_EQ(host.get("mode value abs"), accepted("0.250000"));
    EXPECT_EQ(host.get("mode value abs1"), accepted("0.750000"));
    EXPECT_EQ(host.get("mode value abs1 min"), accepted("0.000000"));
    EXPECT_EQ(host.get("mode value strings"), accepted("a"));
    EXPECT_EQ(host.get("mode value strings1"), accepted("b"));
}

TEST_F(PropertyKeyNames, OfDifferentKindsDoNotCollide) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 10, value = 5 }
Value.switch = true
)toml"));
    EXPECT_EQ(host.get("gain value range1"), refused("Unknown property \"gain value range1\""));
    EXPECT_EQ(host.get("gain value switch1"), refused("Unknown property \"gain value switch1\""));
}

TEST_F(PropertyKeyNames, OfButtonsKeepClearOfSettings) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.switch = true
"Value Switch".button = true
)toml"));
    EXPECT_EQ(host.get("gain value switch"), accepted("true"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("gain value switch1", "propertydialog"));
}

TEST_F(PropertyKeyNames, OfButtonsReplaceAnEarlierCommandOfTheSameName) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Focus"
"One Push".button = true
[[camera.item]]
name = "FOCUS"
"One Push".button = true
)toml"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("focus one push", "propertydialog"));
    EXPECT_EQ(host.execute("focus one push"), accepted());
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 0U);
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "FOCUS"), 1U);
}

TEST_F(PropertyKeyNames, OfButtonsMayEqualAnEarlierOnesNameButNotASettings) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
"Value Range".button = true
Value.range = { min = 0, max = 10, value = 5 }
)toml"));
    // The button came first, and does not stand among the settings.
    EXPECT_EQ(host.get("gain value range"), accepted("5"));
    EXPECT_THAT(host.list("execute_"), ElementsAre("gain value range", "propertydialog"));
}

TEST_F(PropertyKeyNames, OfNoTextAreJustTheBlankAndTheKind) {
    loadRig(camera(R"toml(
[[camera.item]]
name = "Gain"
Value.switch = true
)toml"));
    emptyCall("IVCDPropertyItem::getName");
    emptyCall("IVCDPropertyElement::getName");
    CPropertyHost host;
    EXPECT_EQ(host.get("feature_1"), accepted("  switch"));
    EXPECT_EQ(host.get("  switch"), accepted("true"));
}

// An element name that makes "gain NAME range" exactly `size` characters long.
std::string elementForKey(std::size_t size) {
    return std::string(size - std::string("gain  range").size(), 'x');
}

TEST_F(PropertyKeyNames, AreWholeUpToTheirBound) {
    const std::string element = elementForKey(254);
    CPropertyHost host(camera("[[camera.item]]\nname = \"Gain\"\n" + element +
                              ".range = { min = 1, max = 10, value = 5 }\n"));
    const std::string key = "gain " + element + " range";
    ASSERT_EQ(key.size(), 254U);
    EXPECT_EQ(host.get("feature_1"), accepted(key));
    EXPECT_EQ(host.get(key), accepted("5"));
    EXPECT_EQ(host.get(key + " min"), accepted("1"));
    EXPECT_EQ(host.get(key + " max"), accepted("10"));
    EXPECT_EQ(host.name(0), accepted(key));
}

TEST_F(PropertyKeyNames, OfTheGreatestLengthWorkForEveryKind) {
    const std::string item(120, 'i');
    const auto element = [](std::size_t suffix) { return std::string(254 - 121 - suffix, 'e'); };
    CPropertyHost host(camera("[[camera.item]]\nname = \"" + item + "\"\n" +  //
                              element(4) + ".abs = { min = 0.0, max = 1.0, value = 0.5 }\n" +
                              element(7) + ".switch = true\n" +  //
                              element(8) + ".strings = { choices = [\"a\", \"b\"] }\n" +
                              element(0) + ".button = true\n"));
    const std::string base = item + " ";
    const std::string absolute = base + element(4) + " abs";
    const std::string toggle = base + element(7) + " switch";
    const std::string strings = base + element(8) + " strings";
    const std::string button = base + element(0);
    for (const std::string& key : {absolute, toggle, strings, button}) {
        ASSERT_EQ(key.size(), 254U);
    }
    EXPECT_EQ(host.get(absolute), accepted("0.500000"));
    EXPECT_EQ(host.set(absolute, "2"), refused(absolute + " "));
    EXPECT_EQ(host.set(absolute + " max", "2"),
              refused("Maximum values can not be set! " + absolute.substr(0, 224)));
    EXPECT_EQ(host.get(toggle), accepted("true"));
    EXPECT_EQ(host.set(toggle, "false"), accepted());
    EXPECT_EQ(host.type(toggle.c_str()), 1U);
    EXPECT_EQ(host.choice(toggle.c_str(), 1), accepted("true"));
    EXPECT_EQ(host.get(strings), accepted("a"));
    EXPECT_EQ(host.set(strings, "b"), accepted());
    EXPECT_EQ(host.choice(strings.c_str(), 0), refused("Feature " + strings.substr(0, 247)));
    EXPECT_EQ(host.execute(button), refused(button + " "));
    EXPECT_THAT(host.names(),
                testing::UnorderedElementsAre(absolute, toggle, strings, "pixelformat"));
    EXPECT_THAT(host.list("execute_"), ElementsAre(button, "propertydialog"));
}

TEST_F(PropertyKeyNames, AreCutAtTheirBound) {
    const std::string element = elementForKey(255);
    CPropertyHost host(camera("[[camera.item]]\nname = \"Gain\"\n" + element +
                              ".range = { min = 1, max = 10, value = 5 }\n"));
    const std::string key = "gain " + element + " rang";
    ASSERT_EQ(key.size(), 254U);
    EXPECT_EQ(host.get("feature_1"), accepted(key));
    EXPECT_EQ(host.get(key), accepted("5"));
    EXPECT_EQ(host.get(key + " min"), accepted("1"));
    EXPECT_EQ(host.get(key + " max"), accepted("10"));
}

TEST_F(PropertyKeyNames, KeepTheirNumberWhenCut) {
    const std::string element(300, 'x');
    std::string rig = "[[camera.item]]\nname = \"Gain\"\n";
    for (int i = 0; i < 12; ++i) {
        rig += "[[camera.item.element]]\nname = \"" + element +
               "\"\nswitch = " + (i % 2 == 0 ? "true" : "false") +
               "\nid = \"{00000000-0000-0000-0000-0000000000" + std::to_string(10 + i) + "}\"\n";
    }
    CPropertyHost host(camera(rig));
    EXPECT_EQ(host.get("gain " + std::string(249, 'x')), accepted("true"));
    EXPECT_EQ(host.get("gain " + std::string(248, 'x') + "1"), accepted("false"));
    EXPECT_EQ(host.get("gain " + std::string(248, 'x') + "9"), accepted("false"));
    EXPECT_EQ(host.get("gain " + std::string(247, 'x') + "10"), accepted("true"));
    EXPECT_EQ(host.get("gain " + std::string(247, 'x') + "11"), accepted("false"));
    EXPECT_EQ(host.list("feature_").size(), 13U);
}

// One element's range has a limit key of 254 characters, and the cut key of the other
// element's switch is the very same.
std::string collidingElements(bool switchFirst) {
    const std::string name(254 - std::string("gain  range min").size(), 'x');
    const std::string range = name + ".range = { min = 1, max = 10, value = 5 }\n";
    const std::string toggle = "\"" + name + " range minimum\".switch = true\n";
    return camera("[[camera.item]]\nname = \"Gain\"\n" +
                  (switchFirst ? toggle + range : range + toggle));
}

TEST_F(PropertyKeyNames, OfLimitsReplaceWhatStoodThereBefore) {
    const std::string key = "gain " + std::string(239, 'x') + " range";
    ASSERT_EQ((key + " min").size(), 254U);
    CPropertyHost host(collidingElements(true));
    EXPECT_EQ(host.get(key), accepted("5"));
    EXPECT_EQ(host.get(key + " min"), accepted("1"));
    EXPECT_EQ(host.list("feature_").size(), 4U);
}

TEST_F(PropertyKeyNames, OfLimitsAreKeptClearOfByLaterKeys) {
    const std::string key = "gain " + std::string(239, 'x') + " range";
    CPropertyHost host(collidingElements(false));
    EXPECT_EQ(host.get(key + " min"), accepted("1"));
    EXPECT_EQ(host.get(key + " mi1"), accepted("true"));
    EXPECT_EQ(host.list("feature_").size(), 5U);
}

TEST_F(PropertyKeyNames, OfLimitsMayPassTheBoundAndAreCutWhenListed) {
    const std::string element(300, 'x');
    CPropertyHost host(camera("[[camera.item]]\nname = \"Gain\"\n" + element +
                              ".range = { min = 1, max = 10, value = 5 }\n"));
    const std::string key = "gain " + std::string(249, 'x');
    EXPECT_EQ(host.get(key + " max"), accepted("10"));
    // 258 characters do not fit the host's buffer.
    EXPECT_EQ(host.get("feature_2"), accepted(key + " "));
}

}  // namespace
}  // namespace property_tests
