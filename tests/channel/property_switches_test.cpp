// SPDX-License-Identifier: MIT
// Switches, and settings that take one of the texts that the camera lists.
#include "properties/camera_features.h"
#include "tests/channel/property_identifiers.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertySwitch = CPropertyTest;
using PropertyMapString = CPropertyTest;

const std::string switches = camera(R"toml(
[[camera.item]]
name = "Trigger"
Enable.switch = true
Polarity.switch = false
)toml");

const std::string strings = camera(R"toml(
[[camera.item]]
name = "Mode"
Value.strings = { choices = ["Edge", "Über Niveau", "edge", "x\"y"], value = "Edge" }
)toml");

constexpr const char* validTexts = "Valid values are:\"Edge\" \"Über Niveau\" \"edge\" \"x\"y\" ";

TEST_F(PropertySwitch, ReadsTrueOrFalse) {
    CPropertyHost host(switches);
    EXPECT_EQ(host.get("trigger enable switch"), accepted("true"));
    EXPECT_EQ(host.get("trigger polarity switch"), accepted("false"));
}

TEST_F(PropertySwitch, GoesOnForTrueInAnyCase) {
    CPropertyHost host(switches);
    for (const char* text : {"true", "TRUE", "True", "tRuE"}) {
        ASSERT_EQ(host.set("trigger polarity switch", "false"), accepted());
        EXPECT_EQ(host.set("trigger polarity switch", text), accepted()) << text;
        EXPECT_EQ(host.get("trigger polarity switch"), accepted("true")) << text;
    }
}

TEST_F(PropertySwitch, GoesOffForEveryOtherText) {
    CPropertyHost host(switches);
    for (const char* text :
         {"false", "1", "yes", "on", "true ", " true", "tru", "truee", "", "-1"}) {
        ASSERT_EQ(host.set("trigger enable switch", "true"), accepted());
        EXPECT_EQ(host.set("trigger enable switch", text), accepted()) << text;
        EXPECT_EQ(host.get("trigger enable switch"), accepted("false")) << text;
    }
    ASSERT_EQ(host.set("trigger enable switch", "true"), accepted());
    EXPECT_EQ(host.set("trigger enable switch", nullptr), accepted());
    EXPECT_EQ(host.get("trigger enable switch"), accepted("false"));
}

TEST_F(PropertySwitch, WritesAllBitsOrNone) {
    CPropertyHost host(switches);
    host.forgetCalls();
    EXPECT_EQ(host.set("trigger enable switch", "true"), accepted());
    EXPECT_EQ(host.set("trigger enable switch", "false"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("IVCDSwitchProperty::setSwitch(Trigger,Enable,-1)",
                                            "IVCDSwitchProperty::setSwitch(Trigger,Enable,0)"));
}

TEST_F(PropertySwitch, ThatIsAnAutomaticHoldsNoOneBack) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Gain"
Auto.switch = true
Value.switch = false
Value.strings = { choices = ["a", "b"] }
)toml"));
    EXPECT_EQ(host.set("gain value switch", "true"), accepted());
    EXPECT_EQ(host.set("gain value strings", "b"), accepted());
}

// A switch that answers what the test says.
struct CFakeSwitch final : public DShowLib::IVCDSwitchProperty {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*identifier*/, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* /*identifier*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE getSwitch(VARIANT_BOOL* state) override {
        *state = answer;
        return result;
    }
    HRESULT STDMETHODCALLTYPE setSwitch(VARIANT_BOOL /*state*/) override { return E_NOTIMPL; }

    VARIANT_BOOL answer = 0;
    HRESULT result = 0;
    ULONG references = 1;
};

TEST_F(PropertySwitch, IsOnOnlyWithAllBitsSet) {
    CFakeSwitch fake;
    const std::array<VARIANT_BOOL, 5> off = {0, 1, 2, -2, 0x7FFF};
    for (const VARIANT_BOOL state : off) {
        fake.answer = state;
        EXPECT_FALSE(isOn(fake)) << state;
    }
    fake.answer = -1;
    EXPECT_TRUE(isOn(fake));
}

TEST_F(PropertySwitch, ReadsItsStateAlsoWithASuccessThatIsNotZero) {
    CFakeSwitch fake;
    fake.answer = -1;
    fake.result = 1;
    EXPECT_TRUE(isOn(fake));
    fake.result = -2147467259;
    EXPECT_EQ(thrownCode([&] { isOn(fake); }), -2147467259);
    EXPECT_EQ(fake.references, 1U);
}

TEST_F(PropertySwitch, OffersItsStateAsABoolean) {
    COpenGrabber grabber(camera("[[camera.item]]\nname = \"Brightness\"\nAuto.switch = true\n"));
    CVCDPropertyAuto automatic(brightnessItem, "auto", grabber.get(), autoElement);
    ASSERT_TRUE(automatic.isBound());
    EXPECT_TRUE(automatic.getNumber());
    EXPECT_EQ(automatic.setNumber(false), 0);
    EXPECT_FALSE(automatic.getNumber());
    EXPECT_EQ(automatic.setNumber(true), 0);
    EXPECT_TRUE(automatic.getNumber());
    failCall("IVCDSwitchProperty::setSwitch");
    EXPECT_EQ(thrownCode([&] { automatic.setNumber(false); }), -2147024891);
    failCall("IVCDSwitchProperty::getSwitch");
    EXPECT_EQ(thrownCode([&] { automatic.getNumber(); }), -2147024891);
    EXPECT_TRUE(automatic.getNumber());
}

TEST_F(PropertyMapString, ReadsTheCurrentTextInUtf8) {
    CPropertyHost host(strings);
    EXPECT_EQ(host.get("mode value strings"), accepted("Edge"));
    ASSERT_EQ(host.set("mode value strings", "Über Niveau"), accepted());
    EXPECT_EQ(host.get("mode value strings"), accepted("Über Niveau"));
    EXPECT_EQ(deviceValue("Mode", "Value", "IVCDMapStringsProperty"), "Über Niveau");
}

TEST_F(PropertyMapString, IsComparedExactly) {
    CPropertyHost host(strings);
    host.forgetCalls();
    for (const char* text : {"EDGE", "Edge ", "Edg", "", "über Niveau"}) {
        EXPECT_EQ(host.set("mode value strings", text), refused(validTexts)) << text;
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("mode value strings"), accepted("Edge"));
    EXPECT_EQ(host.set("mode value strings", "edge"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("IVCDMapStringsProperty::setString(Mode,Value,edge)"));
}

TEST_F(PropertyMapString, WritesEveryMatch) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Mode"
Value.strings = { choices = ["a", "twin", "b", "twin"], value = "a" }
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.set("mode value strings", "twin"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("IVCDMapStringsProperty::setString(Mode,Value,twin)",
                                            "IVCDMapStringsProperty::setString(Mode,Value,twin)"));
}

TEST_F(PropertyMapString, WithoutTextsOffersNone) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Mode"
Value.strings = { choices = [] }
)toml"));
    EXPECT_EQ(host.get("mode value strings"), accepted(""));
    EXPECT_EQ(host.set("mode value strings", "a"), refused("Valid values are:"));
    EXPECT_EQ(host.set("mode value strings", ""), refused("Valid values are:"));
}

TEST_F(PropertyMapString, WithoutACollectionOffersNone) {
    CPropertyHost host(strings);
    emptyCall("IVCDMapStringsProperty::getStrings");
    EXPECT_EQ(host.set("mode value strings", "Edge"), refused("Valid values are:"));
}

TEST_F(PropertyMapString, ReadsAMissingTextAsEmpty) {
    CPropertyHost host(strings);
    emptyCall("IVCDMapStringsProperty::getString");
    EXPECT_EQ(host.get("mode value strings"), accepted(""));
    emptyCall("IVCDTexts::getItem");
    EXPECT_EQ(host.set("mode value strings", "none"),
              refused("Valid values are:\"\" \"Über Niveau\" \"edge\" \"x\"y\" "));
}

TEST_F(PropertyMapString, AcceptsAnEmptyTextThatIsListed) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Mode"
Value.strings = { choices = ["", "b"], value = "b" }
)toml"));
    EXPECT_EQ(host.set("mode value strings", ""), accepted());
    EXPECT_EQ(host.get("mode value strings"), accepted(""));
}

TEST_F(PropertyMapString, CutsTheListOfValidTextsAt250Characters) {
    const std::string x120(120, 'x');
    const std::string y120(120, 'y');
    CPropertyHost host(camera("[[camera.item]]\nname = \"Mode\"\nValue.strings = { choices = [\"" +
                              x120 + "\", \"" + y120 + "\"] }\n"));
    EXPECT_EQ(host.set("mode value strings", "other"),
              refused("Valid values are:\"" + x120 + "\" \"" + std::string(109, 'y')));
}

TEST_F(PropertyMapString, CutsALongTextWhenReadButComparesItWhole) {
    const std::string first = std::string(300, 'x') + "1";
    const std::string second = std::string(300, 'x') + "2";
    CPropertyHost host(camera("[[camera.item]]\nname = \"Mode\"\nValue.strings = { choices = [\"" +
                              first + "\", \"" + second + "\"] }\n"));
    EXPECT_EQ(host.set("mode value strings", second), accepted());
    EXPECT_EQ(host.get("mode value strings"), accepted(std::string(255, 'x')));
    EXPECT_EQ(deviceValue("Mode", "Value", "IVCDMapStringsProperty"), second);
    EXPECT_EQ(host.set("mode value strings", std::string(255, 'x')).result, 1);
}

TEST_F(PropertyMapString, LeavesNoReferenceToItsListBehind) {
    CPropertyHost host(strings);
    const std::uint32_t before = alive().interfaces;
    host.set("mode value strings", "edge");
    host.set("mode value strings", "other");
    EXPECT_EQ(alive().interfaces, before);
}

TEST_F(PropertyMapString, AsksForTheListAndWritesWhatMatches) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Mode"
Value.strings = { choices = ["a", "b"], value = "a" }
)toml"));
    host.forgetCalls();
    ASSERT_EQ(host.set("mode value strings", "a"), accepted());
    const std::vector<std::string> calls =
        host.calls({"IVCDMapStringsProperty::getStrings", "IVCDTexts::getCount",
                    "IVCDTexts::getItem", "IVCDMapStringsProperty::setString"});
    ASSERT_EQ(calls.size(), 5U);
    EXPECT_EQ(calls[0], "IVCDMapStringsProperty::getStrings(Mode,Value)");
    EXPECT_EQ(calls[4], "IVCDMapStringsProperty::setString(Mode,Value,a)");
}

}  // namespace
}  // namespace property_tests
