// SPDX-License-Identifier: MIT
// camhost as a whole on a made-up adapter: choosing cameras, reading settings,
// exit codes, and what goes to which stream.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Application : public CCamhostTest {
protected:
    void addColourCamera() {
        MadeUpCamera colour = ordinaryCamera();
        colour.name = "SIM Colour 5";
        colour.serial = "77C01";
        m_system.cameras.push_back(colour);
    }
};

TEST_F(Application, ListShowsOneLinePerCamera) {
    addColourCamera();
    m_system.cameras[1].missing = true;
    const Outcome outcome = camhost({"list"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "#  serial  name          max size  state\n"
              "0  1A2B    SIM Mono 23   4x2       ready\n"
              "1  77C01   SIM Colour 5  4x2       no device\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(Application, ACameraWhosePictureThrowsHidesNoOtherInTheList) {
    addColourCamera();
    camera().imageThrows = true;
    const Outcome outcome = camhost({"list"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "#  serial  name          max size  state\n"
              "0  1A2B    SIM Mono 23   4x2       failing\n"
              "1  77C01   SIM Colour 5  4x2       ready\n");
    EXPECT_EQ(outcome.err,
              "warning: 1A2B: GetImageInfo: the camera's library failed with result code "
              "0x80004005\n");
}

TEST_F(Application, ListWithoutCamerasIsDoneAndSaysSo) {
    m_system.cameras.clear();
    const Outcome outcome = camhost({"list"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "no cameras\n");
    EXPECT_EQ(camhost({"--json", "list"}).out,
              "{\"schema\":\"camhost/1\",\"command\":\"list\",\"result\":[],\"exit\":0}\n");
}

TEST_F(Application, NoCamerasForLackOfTheCaptureLibraryIsToldApart) {
    m_system.cameras.clear();
    m_system.captureLibrary = false;
    const Outcome outcome = camhost({"list"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.err,
              "error: the capture library (ORV_CAPLB11*.dll) is not beside the adapter "
              "made_up.dll\n");
}

TEST_F(Application, ChannelsAreClosedAtTheEndAlsoAfterAFailure) {
    addColourCamera();
    EXPECT_EQ(camhost({"list"}).exit, 0);
    EXPECT_THAT(camera().log, ElementsAre("close"));
    EXPECT_EQ(camhost({"-c", "nobody", "info"}).exit, 3);
    EXPECT_THAT(m_system.cameras[1].log, ElementsAre("close", "close"));
}

TEST_F(Application, ChannelsThatAreOpenAreClosedWhenALaterOneThrows) {
    addColourCamera();
    m_system.cameras[1].openThrows = true;
    const Outcome outcome = camhost({"list"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err,
              "error: GetVideoChannel: the camera's library failed with result code 0x80004005\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Application, AllChannelsAreClosedThoughSomeThrow) {
    addColourCamera();
    addColourCamera();
    m_system.cameras[1].closeThrows = true;
    m_system.cameras[2].closeThrows = true;
    EXPECT_EQ(camhost({"list"}).exit, 1);
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Application, CamerasAreChosenBySerialNamePartOrIndex) {
    addColourCamera();
    for (const char* wanted : {"77C01", "077c01", "SIM Colour 5", "colour", "#1"}) {
        const Outcome outcome = camhost({"-c", wanted, "--json", "get", "framerate"});
        EXPECT_EQ(outcome.exit, 0) << wanted;
        EXPECT_THAT(outcome.out,
                    HasSubstr("\"camera\":{\"index\":1,\"serial\":\"77C01\",\"name\":\"SIM Colour "
                              "5\"}"));
    }
}

TEST_F(Application, AmbiguousChoicesListTheCandidates) {
    addColourCamera();
    const Outcome part = camhost({"-c", "sim", "info"});
    EXPECT_EQ(part.exit, 3);
    EXPECT_EQ(part.out, "");
    EXPECT_EQ(part.err,
              "error: \"sim\" fits several cameras: #0 1A2B \"SIM Mono 23\", #1 77C01 \"SIM Colour "
              "5\"\nhint:  choose by serial or by #index\n");
    EXPECT_EQ(camhost({"info"}).exit, 3);
    const Outcome none = camhost({"-c", "9999", "info"});
    EXPECT_EQ(none.exit, 3);
    EXPECT_THAT(none.err, HasSubstr("error: no camera \"9999\"\nhint:  there are: #0 1A2B"));
    EXPECT_EQ(camhost({"-c", "#2", "info"}).exit, 3);
}

TEST_F(Application, ABareNumberIsASerialAndNeverAPartOfAName) {
    addColourCamera();
    const Outcome outcome = camhost({"-c", "1", "info"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.err,
              "error: no camera \"1\"\n"
              "hint:  a number is a serial; the camera at that index is -c \"#1\"\n");
    EXPECT_EQ(camhost({"-c", "5", "info"}).exit, 3);
    m_system.cameras[1].serial = "5";
    EXPECT_EQ(camhost({"-c", "05", "info"}).exit, 0);
}

TEST_F(Application, NamesAreFoundInLettersOfAnyCase) {
    addColourCamera();
    m_system.cameras[1].name =
        "Kamera S\xC3\xBC"
        "d";
    for (const char* wanted : {"S\xC3\x9C"
                               "D",
                               "s\xC3\xBC"
                               "d",
                               "KAMERA S\xC3\x9C"
                               "D"}) {
        EXPECT_EQ(camhost({"-c", wanted, "info"}).exit, 0) << wanted;
    }
}

TEST_F(Application, AWrongRigIsAUsageError) {
    m_system.cameras.clear();
    m_system.mistake = "standrad: there is no such built-in rig";
    for (const char* command : {"list", "info"}) {
        const Outcome outcome = camhost({"--rig", "standrad", "--json", command});
        EXPECT_EQ(outcome.exit, 2);
        EXPECT_EQ(outcome.err, "error: standrad: there is no such built-in rig\n");
        EXPECT_THAT(outcome.out,
                    HasSubstr("\"error\":{\"code\":\"bad_rig\",\"message\":\"standrad: there is no "
                              "such built-in rig\"},\"exit\":2}"));
    }
    EXPECT_EQ(m_system.variables["VIRTUAL_CAMERAS_QUIET"], "1");
}

TEST_F(Application, ACameraThatNeverOpenedIsNotCalledLost) {
    camera().missing = true;
    camera().values.clear();
    camera().noLists = true;
    for (const char* command : {"info", "props", "grab"}) {
        const Outcome outcome = camhost({command});
        EXPECT_EQ(outcome.exit, 3) << command;
        EXPECT_EQ(outcome.err, "error: 1A2B \"SIM Mono 23\" did not open; in use elsewhere?\n");
    }
}

TEST_F(Application, AMissingSerialIsAbsentInTheJson) {
    camera().serial = "n/a";
    EXPECT_THAT(camhost({"--json", "list"}).out,
                HasSubstr("\"result\":[{\"index\":0,\"name\":\"SIM Mono 23\","));
    const std::string info = camhost({"--json", "info"}).out;
    EXPECT_THAT(info, Not(HasSubstr("serial")));
    EXPECT_THAT(info, HasSubstr("\"framerate\":30.0,"));
}

TEST_F(Application, FormatsStandInTheOrderOfTheirNumbers) {
    for (const char* number : {"1", "2", "10"}) {
        camera().values[std::string("videoformat_") + number] = "BY8 (4x2)";
    }
    const std::string out = camhost({"props", "--all", "videoformat_*"}).out;
    EXPECT_LT(out.find("videoformat_2"), out.find("videoformat_10"));
    EXPECT_LT(out.find("videoformat_0"), out.find("videoformat_1"));
}

TEST_F(Application, ACameraWithoutSerialIsNotChosenByTheTextForNone) {
    addColourCamera();
    camera().serial = "n/a";
    EXPECT_EQ(camhost({"-c", "n/a", "info"}).exit, 3);
    EXPECT_EQ(camhost({"-c", "mono", "info"}).exit, 0);
}

TEST_F(Application, InfoTellsRecordAndPicture) {
    const Outcome outcome = camhost({"info"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "adapter         made_up.dll\n"
              "name            SIM Mono 23\n"
              "serial          1A2B\n"
              "record          632 bytes\n"
              "max size        4x2\n"
              "exposure        none\n"
              "contrast        none\n"
              "brightness      none\n"
              "videoformat     Y800 (4x2)\n"
              "framerate       30.000000\n"
              "settings        14\n"
              "actions         2\n"
              "picture         4x2 Mono8\n");
}

TEST_F(Application, InfoOfALostCameraExitsWithFive) {
    camera().missing = true;
    const Outcome outcome = camhost({"--json", "info"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.out, HasSubstr("\"error\":{\"code\":\"device_lost\",\"message\":\"No valid "
                                       "video capture device selected.\""));
}

TEST_F(Application, PropsShowSettingsWithRangesAndActions) {
    const Outcome outcome = camhost({"props"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "exposure auto switch   (bool)    : value=true\n"
              "exposure value abs     (float)   : min=0.000100 max=30.000000 value=0.033333 "
              "flags=auto\n"
              "framerate              (float)   : value=30.000000\n"
              "gain value range       (int)     : min=0 max=100 value=10\n"
              "pixelformat            (choice)  : value=Mono8\n"
              "trigger enable switch  (bool)    : value=false\n"
              "trigger mode strings   (choice)  : value=Edge\n"
              "videoformat            (choice)  : value=Y800 (4x2)\n"
              "videoformats           (text)    : value=Y800 (4x2) flags=read-only\n"
              "exposure one push      (command) :\n"
              "propertydialog         (command) :\n");
}

TEST_F(Application, PropsTakeAPatternAndShowChoices) {
    const Outcome outcome = camhost({"props", "-L", "videof*t"});
    EXPECT_EQ(outcome.out,
              "videoformat  (choice) : value=Y800 (4x2)\n"
              "    * Y800 (4x2)\n"
              "      Y800 (8x4)\n");
    const Outcome none = camhost({"props", "zoom"});
    EXPECT_EQ(none.exit, 0);
    EXPECT_EQ(none.err, "no settings like \"zoom\"\n");
}

TEST_F(Application, PropsAllAddsLimitsAndListEntries) {
    const Outcome outcome = camhost({"props", "--all", "--plain"});
    EXPECT_THAT(outcome.out, HasSubstr("gain value range\tint\t10\t0\t100\t\n"));
    EXPECT_THAT(outcome.out, HasSubstr("gain value range max\ttext\t100\t\t\tread-only\n"));
    EXPECT_THAT(outcome.out, HasSubstr("feature_1\ttext\texposure auto switch\t\t\tread-only\n"));
    EXPECT_THAT(outcome.out, HasSubstr("feature_15\ttext\t\t\t\tread-only\n"));
    EXPECT_THAT(outcome.out, HasSubstr("execute_1\ttext\texposure one push\t\t\tread-only\n"));
    EXPECT_THAT(outcome.out, HasSubstr("videoformat_0\ttext\tY800 (4x2)\t\t\tread-only\n"));
}

TEST_F(Application, PropsAsJsonLeaveUnknownFactsOut) {
    EXPECT_EQ(
        camhost({"--json", "props", "gain"}).out,
        "{\"schema\":\"camhost/1\",\"command\":\"props\",\"camera\":{\"index\":0,\"serial\":"
        "\"1A2B\",\"name\":\"SIM Mono 23\"},\"result\":[{\"key\":\"gain value range\",\"type\":"
        "\"int\",\"text\":\"10\",\"value\":10,\"min\":0,\"max\":100,\"level\":\"basic\"}],"
        "\"exit\":0}\n");
    EXPECT_THAT(camhost({"--json", "props", "exposure value"}).out,
                HasSubstr("\"value\":0.033333,\"min\":0.0001,\"max\":30.0,\"flags\":[\"auto\"]"));
}

TEST_F(Application, ASettingThatThrowsDoesNotHideTheOthers) {
    camera().throwingCode.insert("gain value range");
    const Outcome outcome = camhost({"props", "a*e"});
    EXPECT_EQ(outcome.exit, 0);
    const Outcome gain = camhost({"props", "gain"});
    EXPECT_EQ(
        gain.out,
        "gain value range  (int) : flags=unavailable  (GetPropertyValue: the camera's library "
        "failed with result code 0x80004005)\n");
}

TEST_F(Application, GetShowsTheRangeAndTakesSeveralKeys) {
    const Outcome outcome = camhost({"get", "Gain Value Range  ", "framerate"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "gain value range  (int)   : min=0 max=100 value=10\n"
              "framerate         (float) : value=30.000000\n");
}

TEST_F(Application, GetOfAnUnknownKeySuggestsNearOnes) {
    const Outcome outcome = camhost({"get", "gian value range", "framerate"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.out, "framerate  (float) : value=30.000000\n");
    EXPECT_EQ(outcome.err,
              "error: no setting \"gian value range\"; did you mean \"gain value range\"?\n");
    const Outcome action = camhost({"get", "propertydialog"});
    EXPECT_EQ(action.exit, 1);
    EXPECT_EQ(action.err,
              "error: \"propertydialog\" is an action, not a setting\n"
              "hint:  camhost exec \"propertydialog\"\n");
}

TEST_F(Application, GetOfALibraryThatFailsNamesTheCode) {
    camera().throwingCode.insert("gain value range");
    const Outcome outcome = camhost({"get", "gain value range"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.err, HasSubstr("result code 0x80004005"));
}

TEST_F(Application, WhatIsThrownAndIsNoCodeAndNoTextIsAFailureToo) {
    camera().throwingOther.insert("gain value range");
    const Outcome outcome = camhost({"--json", "get", "gain value range", "framerate"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.err,
              "error: gain value range: GetPropertyValue: the adapter threw what is no code and no "
              "text\n");
    EXPECT_THAT(outcome.out, HasSubstr("\"key\":\"framerate\""));
}

TEST_F(Application, ATextBufferWrittenPastItsEndIsAnInternalError) {
    camera().textOverrun = 1;
    const Outcome outcome = camhost({"--json", "get", "framerate"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"code\":\"internal\",\"message\":\"GetPropertyValue: the "
                                       "adapter wrote past the text buffer\""));
}

TEST_F(Application, ChoicesComeFromTheAdapterWithTheCurrentOneMarked) {
    const Outcome outcome = camhost({"choices", "videoformat", "pixelformat"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "videoformat:\n    * Y800 (4x2)\n      Y800 (8x4)\n"
              "pixelformat:\n    * Mono8\n      Raw8\n      RGB24\n");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Application, ChoicesOfTextsAreProbedOnRequestOnly) {
    camera().refusals["trigger mode strings"] = "Valid values are:\"Edge\" \"Level\" ";
    camera().refusals["framerate"] = "The frame rate must be between 3.750000 and 60.000000.";
    const Outcome without = camhost({"choices", "trigger mode strings"});
    EXPECT_EQ(without.out, "trigger mode strings:\n");
    EXPECT_THAT(without.err, HasSubstr("--probe"));
    EXPECT_THAT(camera().log, ElementsAre("close"));
    const Outcome with = camhost({"choices", "--probe", "trigger mode strings", "framerate"});
    EXPECT_EQ(with.out,
              "trigger mode strings:\n    * Edge\n      Level\n"
              "framerate: from 3.750000 to 60.000000, now 30.000000\n");
}

TEST_F(Application, ChoicesThatTheAdapterListsNeedNoProbe) {
    camera().choices["trigger mode strings"] = {"Edge", "Level"};
    camera().choices["framerate"] = {"15.0", "30.0"};
    for (const std::vector<std::string>& line :
         {std::vector<std::string>{"choices", "trigger mode strings", "framerate"},
          {"choices", "--probe", "trigger mode strings", "framerate"}}) {
        const Outcome outcome = camhost(line);
        EXPECT_EQ(outcome.out,
                  "trigger mode strings:\n    * Edge\n      Level\n"
                  "framerate:\n      15.0\n    * 30.0\n");
        EXPECT_EQ(outcome.err, "");
    }
    EXPECT_THAT(camera().log, ElementsAre("close", "close"));
    EXPECT_THAT(camhost({"--json", "choices", "framerate"}).out,
                HasSubstr("\"value\":30.0,\"choices\":[\"15.0\",\"30.0\"]"));
    EXPECT_THAT(camhost({"props", "-L", "framerate"}).out,
                HasSubstr("value=30.000000\n      15.0\n    * 30.0\n"));
}

TEST_F(Application, APixelFormatIsNeverProbed) {
    EXPECT_EQ(camhost({"choices", "--probe", "pixelformat"}).exit, 0);
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Application, CommandsAreListed) {
    const Outcome outcome = camhost({"commands"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, "exposure one push\npropertydialog\n");
}

TEST_F(Application, ExecRunsActionsAndReportsRefusals) {
    EXPECT_EQ(camhost({"exec", "PropertyDialog"}).out, "propertydialog: done\n");
    camera().effects["exposure one push"] = {"gain value range", "99"};
    EXPECT_EQ(camhost({"exec", "exposure one push"}).out,
              "exposure one push: done\ngain value range: 10 -> 99\n");
    EXPECT_THAT(camhost({"--json", "exec", "propertydialog"}).out,
                HasSubstr("\"result\":[{\"command\":\"propertydialog\",\"changes\":[]}]"));
    camera().refusals["exposure one push"] = "exposure one push can not be set, ...";
    const Outcome outcome = camhost({"--json", "exec", "exposure one push"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"code\":\"auto_on\""));
    EXPECT_THAT(outcome.err, HasSubstr("hint:  camhost exec --manual \"exposure one push\"\n"));
    const Outcome unknown = camhost({"exec", "exposure onepush"});
    EXPECT_EQ(unknown.exit, 1);
    EXPECT_EQ(unknown.err,
              "error: no action \"exposure onepush\"; did you mean \"exposure one push\"?\n");
}

TEST_F(Application, ThePropertyPageIsNotClosedByTheDialogGuard) {
    camhost({"exec", "propertydialog"});
    EXPECT_THAT(m_system.guarded, ElementsAre(true, false, true, false));
    m_system.guarded.clear();
    camhost({"exec", "exposure one push"});
    EXPECT_THAT(m_system.guarded, ElementsAre(true, true, true, false));
}

TEST_F(Application, APropertyPageThatThrowsLeavesTheDialogGuardOn) {
    camera().throwingOther.insert("propertydialog");
    EXPECT_EQ(camhost({"exec", "propertydialog"}).exit, 1);
    EXPECT_THAT(m_system.guarded, ElementsAre(true, false, true, false));
}

TEST_F(Application, WhatWasDoneBeforeAnActionIsRefusedIsInTheJson) {
    const Outcome outcome = camhost({"--json", "exec", "propertydialog", "zoom"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out,
                HasSubstr("\"result\":[{\"command\":\"propertydialog\",\"changes\":[]}],"
                          "\"error\":{\"code\":\"unknown_command\""));
}

TEST_F(Application, ADialogMakesAGoodResultNotFound) {
    m_system.dialogs = {{"Device Error", "Failed to initialize device X"}};
    const Outcome outcome = camhost({"--json", "list"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out, HasSubstr("\"code\":\"dialog\""));
    EXPECT_THAT(outcome.out, HasSubstr("\"dialogs\":[{\"caption\":\"Device Error\",\"text\":"
                                       "\"Failed to initialize device X\"}]"));
    EXPECT_EQ(camhost({"get", "nothing"}).exit, 1);
}

TEST_F(Application, RigAndClockReachTheEnvironment) {
    EXPECT_EQ(camhost({"--rig", "standard", "--clock", "fast", "list"}).exit, 0);
    EXPECT_EQ(m_system.variables["VIRTUAL_CAMERAS_RIG"], "standard");
    EXPECT_EQ(m_system.variables["VIRTUAL_CAMERAS_CLOCK"], "fast");
}

TEST_F(Application, MistakesTakeTwoLinesAndExitWithTwo) {
    const Outcome outcome = camhost({"lisst"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "error: there is no command \"lisst\"; did you mean \"list\"?\n"
              "try:   camhost --help\n");
    EXPECT_THAT(camhost({"lst", "--json"}).out,
                HasSubstr("{\"schema\":\"camhost/1\",\"command\":\"\",\"error\":{\"code\":"
                          "\"usage\""));
}

TEST_F(Application, HelpGoesToTheResults) {
    const Outcome outcome = camhost({"set", "--help"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Usage: camhost set"));
    EXPECT_EQ(outcome.err, "");
}

TEST_F(Application, QuietLeavesErrors) {
    EXPECT_EQ(camhost({"-q", "props", "zoom"}).err, "");
    EXPECT_THAT(camhost({"-q", "get", "zoom"}).err, HasSubstr("error:"));
}

TEST_F(Application, JsonReplacesTheLinesOfText) {
    EXPECT_THAT(camhost({"--json", "commands"}).out, Not(HasSubstr("propertydialog\n")));
}

}  // namespace
}  // namespace camhost::test
