// SPDX-License-Identifier: MIT
// camhost set, params, save, load and diff on a made-up adapter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Changes : public CCamhostTest {
protected:
    const std::string m_file = m_folder.file("settings.json");
};

TEST_F(Changes, SetShowsOldAndNew) {
    const Outcome outcome = camhost({"set", "gain value range=12", "trigger enable switch=on"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "gain value range: 10 -> 12\ntrigger enable switch: false -> true\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(camera().log,
                ElementsAre("gain value range=12", "trigger enable switch=true", "close"));
}

TEST_F(Changes, SetAsJsonTellsWhatWasAskedAndRead) {
    EXPECT_THAT(camhost({"--json", "set", "gain value range=12"}).out,
                HasSubstr("\"result\":[{\"key\":\"gain value range\",\"asked\":\"12\",\"before\":"
                          "\"10\",\"after\":\"12\",\"matches\":true}]"));
}

TEST_F(Changes, SetOfAGuardedValueNamesTheAutomatic) {
    const Outcome outcome = camhost({"-c", "1a2b", "set", "exposure value abs=0.01"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "error: exposure value abs: refused, automatic is on\n"
              "       the adapter says: exposure value abs can not be set, while automatic is "
              "enabled.\n"
              "hint:  camhost -c 1A2B set \"exposure auto switch=false\"   (or add --manual)\n");
    EXPECT_EQ(camera().values["exposure value abs"], "0.033333");
}

TEST_F(Changes, SetManualSwitchesTheAutomaticOffFirst) {
    const Outcome outcome = camhost({"set", "--manual", "exposure value abs=0.010000"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "exposure auto switch: true -> false\nexposure value abs: 0.033333 -> 0.010000\n");
}

TEST_F(Changes, SetRefusesHalfNumbersBeforeAnythingIsSet) {
    const Outcome outcome = camhost({"set", "framerate=15", "gain value range=12abc"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err,
              "error: gain value range takes a whole number, not \"12abc\"\n"
              "hint:  --raw hands any text to the adapter\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
    EXPECT_EQ(camhost({"set", "trigger enable switch=enabled"}).exit, 2);
    EXPECT_EQ(camhost({"set", "trigger enable switch"}).exit, 2);
}

TEST_F(Changes, SetRawHandsOverAnyText) {
    EXPECT_EQ(camhost({"set", "--raw", "gain value range=12abc"}).exit, 0);
    EXPECT_THAT(camera().log, ElementsAre("gain value range=12abc", "close"));
}

TEST_F(Changes, SetRefusedTellsTheAdaptersWords) {
    camera().refusals["gain value range"] = "gain value range must be within 0 and 100!";
    const Outcome outcome = camhost({"--json", "set", "gain value range=101"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: gain value range must be within 0 and 100!\n");
    EXPECT_THAT(outcome.out, HasSubstr("\"adapter_message\":\"gain value range must be within 0 "
                                       "and 100!\""));
}

TEST_F(Changes, SetThatFailsInsideTheLibraryIsToldApartFromAnUnknownKey) {
    camera().refusals["framerate"] = "Unknown property \"framerate\"";
    const Outcome outcome = camhost({"set", "framerate=30"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err,
              "error: framerate: the camera's library failed at this value\n"
              "       the adapter says: Unknown property \"framerate\"\n");
}

TEST_F(Changes, SetOfAnUnknownKeySuggestsNearOnes) {
    const Outcome outcome = camhost({"set", "framrate=30"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err, "error: no setting \"framrate\"; did you mean \"framerate\"?\n");
}

TEST_F(Changes, SetWarnsWhenTheReadBackDiffers) {
    camera().readBack["framerate"] = "29.970000";
    const Outcome lax = camhost({"set", "framerate=30"});
    EXPECT_EQ(lax.exit, 0);
    EXPECT_EQ(lax.out, "framerate: 30.000000 -> 29.970000\n");
    EXPECT_EQ(lax.err, "warning: framerate: asked for 30, reads 29.970000\n");
    const Outcome strict = camhost({"--json", "set", "--strict", "framerate=30"});
    EXPECT_EQ(strict.exit, 6);
    EXPECT_THAT(strict.out, HasSubstr("\"warnings\":[\"framerate: asked for 30, reads "
                                      "29.970000\"],\"exit\":6"));
}

TEST_F(Changes, SetOfAPixelFormatIgnoresCaseInTheReadBack) {
    camera().readBack["pixelformat"] = "RGB24";
    EXPECT_EQ(camhost({"set", "--strict", "pixelformat=rgb24"}).exit, 0);
}

TEST_F(Changes, DryRunChangesNothing) {
    const Outcome outcome = camhost({"set", "--dry-run", "--manual", "exposure value abs=0.01"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "exposure auto switch: true -> false   (not done)\n"
              "exposure value abs: 0.033333 -> 0.01   (not done)\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Changes, ParamsKeepWhatIsNotNamed) {
    camera().values["contrast value range"] = "64";
    camera().values["contrast value range min"] = "0";
    camera().values["contrast value range max"] = "255";
    camera().values["trigger enable switch"] = "true";
    const Outcome outcome = camhost({"params", "exposure=0.01", "roi=1,0,3,2"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "exposure auto switch: true -> false\nexposure value abs: 0.033333 -> 0.010000\n");
    EXPECT_EQ(camera().parameters.exposure, 0.01);
    EXPECT_EQ(static_cast<int>(255 * camera().parameters.contrast), 64);
    EXPECT_EQ(camera().parameters.triggerEnable, 1);
    EXPECT_EQ(camera().parameters.triggerPolarity, 0);
    EXPECT_EQ(camera().parameters.roiLeft, 1);
    EXPECT_EQ(camera().parameters.roiWidth, 3);
}

TEST_F(Changes, ParamsWarnOfWhatTheBlockCanNotDo) {
    const Outcome outcome = camhost({"params", "--strict", "contrast=0.5"});
    EXPECT_EQ(outcome.exit, 6);
    EXPECT_EQ(outcome.err,
              "warning: the block switches automatic exposure off\n"
              "warning: the camera has no contrast (\"contrast value range\")\n");
    EXPECT_EQ(camera().parameters.exposure, 0.033333);
    EXPECT_EQ(camhost({"params", "gain=1"}).exit, 2);
}

TEST_F(Changes, SavedSettingsLoadBackInASafeOrder) {
    EXPECT_EQ(camhost({"save", m_file}).out, "saved 8 settings of 1A2B to " + m_file + "\n");
    EXPECT_EQ(m_folder.content("settings.json"),
              "{\n  \"schema\": \"camhost-settings/1\",\n  \"serial\": \"1A2B\",\n"
              "  \"name\": \"SIM Mono 23\",\n  \"date\": \"2024-05-06T07:08:09Z\",\n"
              "  \"settings\": {\n    \"exposure auto switch\": \"true\",\n"
              "    \"exposure value abs\": \"0.033333\",\n    \"framerate\": \"30.000000\",\n"
              "    \"gain value range\": \"10\",\n    \"pixelformat\": \"Mono8\",\n"
              "    \"trigger enable switch\": \"false\",\n"
              "    \"trigger mode strings\": \"Edge\",\n"
              "    \"videoformat\": \"Y800 (4x2)\"\n  }\n}\n");
    camera().values["exposure value abs"] = "0.500000";
    camera().values["pixelformat"] = "RGB24";
    camera().values["trigger enable switch"] = "true";
    camera().log.clear();
    EXPECT_EQ(camhost({"load", m_file}).exit, 0);
    EXPECT_THAT(camera().log,
                ElementsAre("pixelformat=Mono8", "exposure auto switch=false",
                            "exposure value abs=0.033333", "trigger enable switch=false",
                            "exposure auto switch=true", "close"));
    EXPECT_EQ(camhost({"diff", m_file}).err, "no differences\n");
}

TEST_F(Changes, LoadOfWhatIsSetAlreadyTouchesNothing) {
    camhost({"save", m_file});
    camera().log.clear();
    EXPECT_EQ(camhost({"load", m_file}).err, "nothing to change\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Changes, LoadGoesOnAfterARefusalAndTellsHowManyFailed) {
    camhost({"save", m_file});
    camera().values["gain value range"] = "11";
    camera().values["framerate"] = "15.000000";
    camera().refusals["framerate"] = "No frame rates available!";
    camera().values.erase("trigger mode strings");
    camera().serial = "77C01";
    const Outcome outcome = camhost({"load", m_file});
    EXPECT_EQ(outcome.exit, 6);
    EXPECT_EQ(camera().values["gain value range"], "10");
    EXPECT_EQ(outcome.err,
              "warning: the file is of camera 1A2B (SIM Mono 23)\n"
              "warning: framerate: No frame rates available!\n"
              "warning: the camera has no \"trigger mode strings\"\n"
              "error: 2 of 8 saved settings could not be set\n");
}

TEST_F(Changes, DiffShowsBothSides) {
    camhost({"save", m_file});
    camera().values["gain value range"] = "11";
    camera().values["hue value range"] = "1";
    camera().values.erase("trigger mode strings");
    const Outcome outcome = camhost({"diff", m_file});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "gain value range: 10 -> 11\n"
              "trigger mode strings: Edge -> (not in the camera)\n"
              "hue value range: (not in the file) -> 1\n");
    EXPECT_EQ(outcome.err, "3 differences\n");
    EXPECT_EQ(camhost({"diff", "--strict", m_file}).exit, 6);
}

TEST_F(Changes, AMissingFileIsAUsageError) {
    const Outcome outcome = camhost({"load", m_file + "x"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err, "error: can not read \"" + m_file + "x\"\n");
}

}  // namespace
}  // namespace camhost::test
