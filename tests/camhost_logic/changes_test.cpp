// SPDX-License-Identifier: MIT
// camhost set, params, save, load and diff on a made-up adapter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/files.h"
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
              "hint:  camhost -c 1A2B set --manual \"exposure value abs=0.01\"   (or, in the same "
              "run before it, \"exposure auto switch=false\")\n");
    EXPECT_EQ(camera().values["exposure value abs"], "0.033333");
    EXPECT_THAT(camera().log, ElementsAre("close"));
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
    const Outcome outcome = camhost({"--json", "set", "gain value range=99"});
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

TEST_F(Changes, ADryRunIsMarkedInTheJson) {
    EXPECT_THAT(camhost({"--json", "set", "--dry-run", "gain value range=12"}).out,
                HasSubstr("\"result\":[{\"key\":\"gain value range\",\"asked\":\"12\",\"before\":"
                          "\"10\",\"dry_run\":true}],\"exit\":0"));
}

struct RefusedValue {
    const char* assignment;
    const char* message;
};

// Before anything is set, in a dry run and in a real one.
TEST_F(Changes, WhatTheCameraWillRefuseIsRefusedBeforeTheFirstWrite) {
    const RefusedValue values[] = {
        {"gain value range=5000", "gain value range must be within 0 and 100, not 5000"},
        {"videoformats=Y800 (4x2)", "videoformats is read-only"},
        {"gain value range max=7", "gain value range max is read-only"},
        {"videoformat=Y800 (4x3)",
         "videoformat has no choice \"Y800 (4x3)\"; did you mean \"Y800 (4x2)\" or \"Y800 "
         "(8x4)\"?"},
        {"pixelformat=cmyk",
         "pixelformat has no choice \"cmyk\"; there are \"Mono8\", \"Raw8\" or \"RGB24\""},
        {"exposure value abs=0.01", "exposure value abs: refused, automatic is on"},
    };
    for (const RefusedValue& value : values) {
        for (const char* option : {"--strict", "--dry-run"}) {
            const Outcome outcome = camhost({"set", option, "framerate=15", value.assignment});
            EXPECT_EQ(outcome.exit, 1) << value.assignment;
            EXPECT_EQ(outcome.out, "");
            EXPECT_THAT(outcome.err, testing::StartsWith(std::string("error: ") + value.message));
        }
    }
    EXPECT_THAT(camera().log, testing::Each("close"));
}

TEST_F(Changes, ManualSwitchesNothingForAValueOutOfRange) {
    const Outcome outcome = camhost({"set", "--manual", "exposure value abs=50"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err,
              "error: exposure value abs must be within 0.000100 and 30.000000, not 50\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Changes, AnAutomaticThatIsSwitchedOffBeforeInTheSameRunGuardsNothing) {
    EXPECT_EQ(camhost({"set", "exposure auto switch=off", "exposure value abs=0.01"}).exit, 0);
    EXPECT_EQ(camera().values["exposure value abs"], "0.01");
    EXPECT_EQ(camhost({"set", "exposure auto switch=on", "exposure value abs=0.02"}).exit, 1);
    EXPECT_EQ(camera().values["exposure auto switch"], "false");
}

// The limits and formats that count are those of the new norm.
TEST_F(Changes, ValuesBehindAFormatAreLeftToTheAdapter) {
    EXPECT_EQ(camhost({"set", "videoformat=Y800 (8x4)", "gain value range=5000"}).exit, 0);
}

TEST_F(Changes, WhatWasSetBeforeARefusalIsPutBack) {
    camera().refusals["exposure value abs"] = "exposure value abs property is not available!";
    const Outcome outcome =
        camhost({"--json", "set", "--manual", "framerate=15.000000", "exposure value abs=0.01"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(camera().log, ElementsAre("framerate=15.000000", "exposure auto switch=false",
                                          "exposure value abs=0.01", "exposure auto switch=true",
                                          "framerate=30.000000", "close"));
    EXPECT_THAT(outcome.out, HasSubstr("{\"key\":\"framerate\",\"before\":\"15.000000\",\"after\":"
                                       "\"30.000000\",\"put_back\":true}]"));
    camera().values["exposure auto switch"] = "true";
    EXPECT_EQ(camhost({"set", "framerate=15.000000", "--manual", "exposure value abs=0.01"}).out,
              "framerate: 30.000000 -> 15.000000\nexposure auto switch: true -> false\n"
              "exposure auto switch: false -> true   (put back)\n"
              "framerate: 15.000000 -> 30.000000   (put back)\n");
}

TEST_F(Changes, ChoicesThatOnlyARefusalNamesAreSearchedForANearOne) {
    camera().refusals["trigger mode strings"] = "Valid values are:\"Edge\" \"Level\" ";
    EXPECT_THAT(camhost({"set", "trigger mode strings=Lvel"}).err,
                HasSubstr("hint:  did you mean \"Level\"?\n"));
    EXPECT_EQ(camhost({"set", "--dry-run", "trigger mode strings=Lvel"}).err,
              "trigger mode strings: only the adapter can tell whether it takes that\n");
}

TEST_F(Changes, ANumberThatIsTooLongIsToldSo) {
    EXPECT_THAT(camhost({"set", "gain value range=99999999999"}).err,
                HasSubstr("error: gain value range takes a whole number within -2147483648 and "
                          "2147483647, not \"99999999999\"\n"));
}

TEST_F(Changes, SettingsAreFoundByTheirBeginningAndByOtherNames) {
    EXPECT_EQ(camhost({"set", "gian=3"}).err,
              "error: no setting \"gian\"; did you mean \"gain value range\", \"gain value range "
              "max\" or \"gain value range min\"?\n");
    EXPECT_EQ(camhost({"set", "fps=3"}).err,
              "error: no setting \"fps\"; did you mean \"framerate\"?\n");
    EXPECT_EQ(camhost({"get", "ExposureTime"}).err,
              "error: no setting \"ExposureTime\"; did you mean \"exposure value abs\"?\n");
}

TEST_F(Changes, MistakingAnActionForASettingHintsAtTheSameCamera) {
    EXPECT_EQ(camhost({"--rig", "my rig.toml", "-c", "1a2b", "set", "propertydialog=1"}).err,
              "error: \"propertydialog\" is an action, not a setting\n"
              "hint:  camhost --rig \"my rig.toml\" -c 1A2B exec \"propertydialog\"\n");
    EXPECT_EQ(camhost({"-c", "1a2b", "exec", "framerate"}).err,
              "error: \"framerate\" is a setting, not an action\n"
              "hint:  camhost -c 1A2B get \"framerate\"\n");
}

TEST_F(Changes, ExecManualSwitchesTheAutomaticOffFirst) {
    EXPECT_EQ(camhost({"exec", "--manual", "exposure one push"}).out,
              "exposure one push: done\nexposure auto switch: true -> false\n");
    EXPECT_THAT(camera().log,
                ElementsAre("exposure auto switch=false", "execute exposure one push", "close"));
    camera().log.clear();
    camera().values["exposure auto switch"] = "true";
    camera().refusals["exposure one push"] = "not now";
    EXPECT_EQ(camhost({"exec", "--manual", "exposure one push"}).exit, 1);
    EXPECT_EQ(camera().values["exposure auto switch"], "true");
}

TEST_F(Changes, AnActionThatThrowsLeavesItsAutomaticOn) {
    camera().throwingOther.insert("exposure one push");
    EXPECT_EQ(camhost({"exec", "--manual", "exposure one push"}).exit, 1);
    EXPECT_EQ(camera().values["exposure auto switch"], "true");
}

TEST_F(Changes, ParamsTakeFractions) {
    const Outcome outcome = camhost({"params", "brightness=2"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.err, "error: brightness takes a fraction of its range, within 0 and 1\n");
}

TEST_F(Changes, ParamsWarnInTheUnitThatWasTyped) {
    camera().values["brightness value range"] = "64";
    camera().values["brightness value range min"] = "0";
    camera().values["brightness value range max"] = "255";
    EXPECT_THAT(camhost({"params", "brightness=0.5"}).err,
                HasSubstr("warning: brightness: asked for 0.500 of its range, which is 127, reads "
                          "64\n"));
}

TEST_F(Changes, ParamsTellThatARegionWasNotTaken) {
    const Outcome outcome = camhost({"params", "--strict", "exposure=0.01", "roi=1,0,3,2"});
    EXPECT_EQ(outcome.exit, 6);
    EXPECT_EQ(outcome.err, "warning: roi: asked for 1,0,3,2, reads 0,0,4,2\n");
    EXPECT_EQ(camhost({"params", "--strict", "exposure=0.01", "roi=0,0,4,2"}).exit, 0);
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

TEST_F(Changes, LoadLeavesTheAutomaticsOfOtherValuesAlone) {
    camhost({"save", m_file});
    camera().values["framerate"] = "15.000000";
    camera().values["gain value range"] = "11";
    camera().log.clear();
    EXPECT_EQ(camhost({"load", m_file}).exit, 0);
    EXPECT_THAT(camera().log, ElementsAre("framerate=30.000000", "gain value range=10", "close"));
}

TEST_F(Changes, LoadPutsAnAutomaticBackThatTheFileDoesNotTellOf) {
    writeTextFile(m_file,
                  "{\"schema\":\"camhost-settings/1\",\"serial\":\"1A2B\",\"settings\":"
                  "{\"exposure value abs\":\"0.010000\"}}");
    EXPECT_EQ(camhost({"load", m_file}).exit, 0);
    EXPECT_THAT(camera().log,
                ElementsAre("exposure auto switch=false", "exposure value abs=0.010000",
                            "exposure auto switch=true", "close"));
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
    EXPECT_EQ(camhost({"diff", m_file}).err, "1 difference\n");
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
