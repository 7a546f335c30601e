// SPDX-License-Identifier: MIT
// Commands by key: one-push adjustments, and the library's property page.
#include "properties/executables.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Command = CPropertyTest;
using CommandOnePush = CPropertyTest;
using CommandPropertyDialog = CPropertyTest;

const std::string focus = camera(R"toml(
[[camera.item]]
name = "Focus"
Value.range = { min = 0, max = 100, value = 7 }
Auto.switch = false
"One Push".button = { sets = "Value", to = 42 }
[[camera.item]]
name = "Shutter"
"One Push".button = true
)toml");

TEST_F(Command, IsMatchedAfterLoweringAndTrimmingTheEnd) {
    CPropertyHost host(focus);
    EXPECT_EQ(host.execute("PROPERTYDIALOG  "), accepted());
    EXPECT_EQ(virtualCamerasPagesShown(), 1U);
    EXPECT_EQ(host.execute("Focus ONE Push "), accepted());
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 1U);
}

TEST_F(Command, ThatIsUnknownIsQuotedAsTheHostGaveIt) {
    CPropertyHost host(focus);
    host.forgetCalls();
    EXPECT_EQ(host.execute(" propertydialog"), refused("Unknown command \" propertydialog\""));
    EXPECT_EQ(host.execute("No Such THING  "), refused("Unknown command \"No Such THING  \""));
    EXPECT_EQ(host.execute(""), refused("Unknown command \"\""));
    EXPECT_EQ(host.execute("  "), refused("Unknown command \"  \""));
    EXPECT_EQ(host.execute(nullptr), refused("Unknown command \"\""));
    EXPECT_EQ(host.callCount(), 0U);
    EXPECT_EQ(virtualCamerasPagesShown(), 0U);
}

TEST_F(Command, IsNoSettingAndNoSettingIsACommand) {
    CPropertyHost host(focus);
    EXPECT_EQ(host.execute("focus value range"), refused("Unknown command \"focus value range\""));
    EXPECT_EQ(host.execute("execute_1"), refused("Unknown command \"execute_1\""));
    EXPECT_EQ(host.execute("feature_1"), refused("Unknown command \"feature_1\""));
    EXPECT_EQ(host.get("propertydialog"), refused("Unknown property \"propertydialog\""));
    EXPECT_EQ(host.set("focus one push", "true"), refused("Unknown property \"focus one push\""));
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 0U);
}

TEST_F(Command, CutsTheMessageOfALongKey) {
    CPropertyHost host(focus);
    EXPECT_EQ(host.execute(std::string(300, 'K')),
              refused("Unknown command \"" + std::string(238, 'K')));
}

TEST_F(Command, NeedsNoMessageBuffer) {
    CPropertyHost host(focus);
    CVideoChannel& channel = host.channel();
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "focus one push"), 0);
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "propertydialog"), 0);
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "other"), 1);
    EXPECT_EQ(channel.ExecuteCommand(nullptr, nullptr), 1);
    ASSERT_EQ(host.set("focus auto switch", "true"), accepted());
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "focus one push"), 1);
    ASSERT_EQ(virtualCamerasUnplug(cameraId), 1);
    EXPECT_EQ(channel.ExecuteCommand(nullptr, "propertydialog"), 1);
}

TEST_F(Command, ListedByTheExecuteEntriesRuns) {
    CPropertyHost host(focus);
    for (const std::string& command : host.list("execute_")) {
        EXPECT_EQ(host.execute(command), accepted()) << command;
    }
    EXPECT_EQ(virtualCamerasPagesShown(), 1U);
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 1U);
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Shutter"), 1U);
}

TEST_F(CommandOnePush, PushesTheButton) {
    CPropertyHost host(focus);
    host.forgetCalls();
    EXPECT_EQ(host.execute("focus one push"), accepted());
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::getSwitch", "IVCDButtonProperty::push"}),
                ElementsAre("IVCDSwitchProperty::getSwitch(Focus,Auto)",
                            "IVCDButtonProperty::push(Focus,One Push)"));
    EXPECT_EQ(host.get("focus value range"), accepted("42"));
}

TEST_F(CommandOnePush, IsRefusedWhileTheAutomaticIsOn) {
    CPropertyHost host(focus);
    ASSERT_EQ(host.set("focus auto switch", "true"), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.execute("focus one push"),
              refused("focus one push can not be set, while automatic is enabled. Use \"focus one "
                      "push auto\" property and set to \"false\"!"));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 0U);
    EXPECT_EQ(host.get("focus value range"), accepted("7"));
    // The automatic is read anew each time.
    ASSERT_EQ(host.set("focus auto switch", "false"), accepted());
    EXPECT_EQ(host.execute("focus one push"), accepted());
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 1U);
}

TEST_F(CommandOnePush, WithoutAnAutomaticIsPushedUnasked) {
    CPropertyHost host(focus);
    host.forgetCalls();
    EXPECT_EQ(host.execute("shutter one push"), accepted());
    EXPECT_THAT(host.calls({"IVCDSwitchProperty::getSwitch"}), IsEmpty());
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Shutter"), 1U);
}

TEST_F(CommandOnePush, OfAButtonElsewhereStillPushesTheOnePushElement) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Focus"
Reset.button = true
"One Push".button = true
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.execute("focus reset"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("IVCDButtonProperty::push(Focus,One Push)"));
}

TEST_F(CommandOnePush, OfAButtonElsewhereAloneIsNotAvailable) {
    CPropertyHost host(camera(R"toml(
[[camera.item]]
name = "Focus"
Reset.button = true
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.execute("focus reset"), refused("focus reset property is not available!"));
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(CommandOnePush, ThrowsTheResultCodeOfAFailedCall) {
    CPropertyHost host(focus);
    failCall("IVCDSwitchProperty::getSwitch");
    EXPECT_EQ(thrownCode([&] { host.execute("focus one push"); }), -2147024891);
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 0U);
    failCall("IVCDButtonProperty::push");
    EXPECT_EQ(thrownCode([&] { host.execute("focus one push"); }), -2147024891);
    EXPECT_EQ(virtualCamerasButtonPushes(cameraId, "Focus"), 0U);
    EXPECT_EQ(host.execute("focus one push"), accepted());
}

TEST_F(CommandOnePush, CutsTheMessageOfTheLongestName) {
    const std::string element(249, 'x');
    CPropertyHost host(camera("[[camera.item]]\nname = \"Gain\"\nAuto.switch = true\n" + element +
                              ".button = true\n\"One Push\".button = true\n"));
    const std::string key = "gain " + element;
    ASSERT_EQ(key.size(), 254U);
    EXPECT_EQ(host.execute(key), refused(key + " "));
}

TEST_F(CommandPropertyDialog, ShowsThePageWithoutParentAndTitle) {
    CPropertyHost host(focus);
    host.forgetCalls();
    EXPECT_EQ(host.execute("propertydialog"), accepted());
    EXPECT_EQ(virtualCamerasPagesShown(), 1U);
    const std::vector<std::string> calls =
        host.calls({"Grabber::isDevValid", "Grabber::showVCDPropertyPage"});
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0], "Grabber::isDevValid()");
    EXPECT_EQ(calls[1], "Grabber::showVCDPropertyPage(null,)");
}

TEST_F(CommandPropertyDialog, IgnoresHowThePageEnds) {
    CPropertyHost host(focus);
    refuseCall("Grabber::showVCDPropertyPage");
    EXPECT_EQ(host.execute("propertydialog"), accepted());
}

TEST_F(CommandPropertyDialog, SaysWhenTheDeviceIsLost) {
    CPropertyHost host(focus);
    ASSERT_EQ(virtualCamerasUnplug(cameraId), 1);
    host.forgetCalls();
    EXPECT_EQ(host.execute("propertydialog"), refused("No valid video capture device selected."));
    EXPECT_EQ(virtualCamerasPagesShown(), 0U);
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(CommandPropertyDialog, SaysWhenNoDeviceWasEverOpened) {
    loadRig(focus);
    DShowLib::Grabber grabber;
    CExecutePropertyDialog dialog("Property Dialog", grabber);
    CHostText message;
    EXPECT_EQ(dialog.execute(message), 1);
    EXPECT_EQ(message.text(), "No valid video capture device selected.");
    EXPECT_EQ(virtualCamerasPagesShown(), 0U);
}

TEST_F(CommandPropertyDialog, LetsAThrownTextThrough) {
    CPropertyHost host(focus);
    throwFromCall("Grabber::showVCDPropertyPage", "no desktop");
    EXPECT_THROW(host.execute("propertydialog"), char*);
}

}  // namespace
}  // namespace property_tests
