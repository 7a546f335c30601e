// SPDX-License-Identifier: MIT
// The owner of the view's cameras: frames, losses, time-outs and what requests make it do.
#include <gmock/gmock.h>

#include "tests/camhost_logic/view_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using namespace usual_waits;

using ViewOwner = CViewTest;

TEST_F(ViewOwner, FramesAreCountedFromOne) {
    begin();
    turns(3);
    EXPECT_EQ(state({"frames"}), "3");
    EXPECT_EQ(state({"frame", "number"}), "3");
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_EQ(state({"rate", "asked"}), "30.0");
    EXPECT_EQ(state({"rate", "measured"}), "8.0");
}

TEST_F(ViewOwner, CountersAloneMakeTwoVersionsASecond) {
    begin();
    const std::string version = state({"version"});
    turns(3);
    EXPECT_EQ(state({"version"}), version);
    turns(1);
    EXPECT_NE(state({"version"}), version);
}

TEST_F(ViewOwner, ATimeOutIsNoLoss) {
    waits({frame, timeout, timeout, frame});
    begin();
    turns(2);
    EXPECT_EQ(state({"live"}), "waiting");
    EXPECT_EQ(state({"secondsWithoutFrame"}), "1.0");
    EXPECT_EQ(state({"timeouts"}), "1");
    EXPECT_EQ(state({"losses"}), "0");
    turns(2);
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_EQ(eventLines(), "started: 1A2B\ntimeout: no frame in 1.0 s\n");
}

TEST_F(ViewOwner, ATriggerThatIsWaitedForIsToldApart) {
    camera().values["trigger enable switch"] = "true";
    waits({timeout});
    begin();
    turns(1);
    EXPECT_EQ(state({"live"}), "trigger");
}

TEST_F(ViewOwner, ALostCameraIsSearchedForAndComesBack) {
    waits({frame, lost, lost, {0, HOST_STATUS_DONE, 0.0, {}}});
    begin();
    turns(2);
    EXPECT_EQ(state({"live"}), "lost");
    EXPECT_EQ(state({"losses"}), "1");
    turns(40);
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_EQ(eventLines(),
              "started: 1A2B\nlost: lost 1A2B after frame 1\nrestored: restored after 0.4 s\n");
    EXPECT_EQ(m_err.str(), "lost 1A2B after frame 1; searching ...\nrestored after 0.4 s\n");
    EXPECT_THAT(camera().log, ElementsAre("start")) << "neither stopped nor started meanwhile";
}

TEST_F(ViewOwner, TheWaitWithWhichACameraComesBackCountsAsSilence) {
    waits({frame, lost, timeout, frame});
    begin();
    turns(40);
    EXPECT_EQ(eventLines(),
              "started: 1A2B\nlost: lost 1A2B after frame 1\nrestored: restored after 1.2 s\n"
              "timeout: no frame in 1.0 s\n");
}

TEST_F(ViewOwner, SettingsOfACameraThatIsGoneStayAsTheyWereRead) {
    Wait unplugged = timeout;
    unplugged.missing = true;
    unplugged.values = {{"gain value range", "0"}};
    waits({frame, unplugged, lost, lost, lost});
    begin();
    turns(4);
    EXPECT_EQ(state({"live"}), "lost");
    EXPECT_EQ(setting("gain value range", "value"), "10");
}

TEST_F(ViewOwner, ACameraThatComesBackLargerIsStartedAnew) {
    waits({frame, lost, frame});
    begin();
    turns(2);
    camera().width = 8;
    camera().frame.resize(16);
    turns(20);
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "start"));
    EXPECT_EQ(state({"frame", "width"}), "8");
}

TEST_F(ViewOwner, ARefusedWaitIsCountedAndTriedAgain) {
    waits({frame, {1, 0, 0.0, "no bandwidth"}, {1, 0, 0.0, "no bandwidth"}, frame});
    begin();
    turns(40);
    EXPECT_EQ(state({"refusals"}), "2");
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_EQ(eventLines(),
              "started: 1A2B\nrefused: waiting for a frame was refused: no bandwidth\n");
}

TEST_F(ViewOwner, ASettingIsSetWithTheChecksOfTheCommandLine) {
    begin();
    const Seen outcome = set("gain value range", "7");
    EXPECT_EQ(outcome.status, 200);
    EXPECT_EQ(outcome.body,
              R"({"changes":[{"key":"gain value range","asked":"7","before":"10","after":"7",)"
              R"("matches":true}]})");
    EXPECT_EQ(setting("gain value range", "value"), "7");
    EXPECT_THAT(eventLines(), HasSubstr("setting: gain value range: 10 -> 7\n"));
}

TEST_F(ViewOwner, WhatIsRefusedSaysWhyAndChangesNothing) {
    begin();
    const Seen outcome = set("gain value range", "500");
    EXPECT_EQ(outcome.status, 409);
    EXPECT_EQ(outcome.at({"error", "message"}),
              "gain value range must be within 0 and 100, not 500");
    EXPECT_THAT(camera().log, ElementsAre("start"));
    EXPECT_EQ(state({"refusals"}), "1");
    EXPECT_THAT(eventLines(), HasSubstr("refused: gain value range must be within 0 and 100"));
}

TEST_F(ViewOwner, TheAdaptersOwnWordsGoWithARefusal) {
    camera().refusals["gain value range"] = "gain value range is busy";
    begin();
    EXPECT_EQ(set("gain value range", "7").at({"error", "adapter_message"}),
              "gain value range is busy");
}

TEST_F(ViewOwner, AnAutomaticGuardsItsValueUntilItIsManual) {
    begin();
    EXPECT_EQ(set("exposure value abs", "0.01").at({"error", "code"}), "auto_on");
    EXPECT_EQ(setting("exposure value abs", "automatic"), "exposure auto switch");
    EXPECT_EQ(setting("exposure value abs", "flags"), R"(["auto"])");
    const Seen manual =
        done("PUT", "api/settings", R"({"key":"exposure value abs","text":"0.01","manual":true})");
    EXPECT_EQ(manual.status, 200);
    EXPECT_EQ(setting("exposure auto switch", "value"), "false");
}

TEST_F(ViewOwner, WhatAnAutomaticDoesIsSeenWithinASecond) {
    begin();
    turns(1);
    const std::string version = state({"version_settings"});
    camera().values["gain value range"] = "42";
    turns(5);
    EXPECT_EQ(setting("gain value range", "text"), "42");
    EXPECT_NE(state({"version_settings"}), version);
}

TEST_F(ViewOwner, VideoIsStoppedForAFormatAndStartedAgain) {
    begin();
    turns(1);
    EXPECT_EQ(set("videoformat", "Y800 (8x4)").status, 200);
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "videoformat=Y800 (8x4)", "start"));
    EXPECT_EQ(state({"live"}), "live");
}

TEST_F(ViewOwner, AFormatThatIsRefusedBeforehandStopsNothing) {
    begin();
    EXPECT_EQ(set("videoformat", "Y800 (9x9)").status, 409);
    EXPECT_THAT(camera().log, ElementsAre("start"));
}

TEST_F(ViewOwner, AFormatIsRefusedWhileTheCameraIsLost) {
    waits({lost, lost, lost, lost});
    begin();
    turns(1);
    EXPECT_EQ(set("videoformat", "Y800 (8x4)").at({"error", "code"}), "device_lost");
    EXPECT_EQ(done("POST", "api/live", R"({"live":false})").at({"error", "code"}), "device_lost");
}

TEST_F(ViewOwner, VideoIsStoppedAndStarted) {
    begin();
    turns(1);
    EXPECT_EQ(done("POST", "api/live", R"({"live":false})").status, 200);
    EXPECT_EQ(state({"live"}), "stopped");
    turns(50);
    EXPECT_EQ(m_owner->counts().frames, 1U);
    EXPECT_EQ(done("POST", "api/live", R"({"live":true})").status, 200);
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_THAT(eventLines(), HasSubstr("stopped: 1A2B\nstarted: 1A2B\n"));
}

TEST_F(ViewOwner, ACommandTellsWhatItChanged) {
    camera().values["exposure auto switch"] = "false";
    camera().effects["exposure one push"] = {"exposure value abs", "0.500000"};
    begin();
    const Seen outcome = done("POST", "api/commands", R"({"command":"exposure one push"})");
    EXPECT_EQ(outcome.body,
              R"({"command":"exposure one push","changes":[{"key":"exposure value abs",)"
              R"("before":"0.033333","after":"0.500000"}]})");
    EXPECT_EQ(setting("exposure value abs", "text"), "0.500000");
}

TEST_F(ViewOwner, ThePropertyPageIsNotShownFromABrowser) {
    begin();
    const Seen outcome = done("POST", "api/commands", R"({"command":"propertydialog"})");
    EXPECT_EQ(outcome.status, 409);
    EXPECT_EQ(outcome.at({"error", "hint"}), "camhost exec propertydialog");
    EXPECT_THAT(camera().log, ElementsAre("start"));
}

class ViewOfTwo : public CViewTest {
protected:
    ViewOfTwo() {
        MadeUpCamera second = ordinaryCamera();
        second.serial = "77C01";
        second.name = "SIM Colour 5";
        second.values["gain value range"] = "33";
        m_system.cameras.push_back(second);
    }
    Seen choose(const char* index) {
        return done("POST", "api/camera", std::string(R"({"camera":)") + index + "}");
    }
};

TEST_F(ViewOfTwo, AnotherCameraIsChosenAndNumbersGoOn) {
    begin();
    turns(2);
    EXPECT_EQ(choose("1").status, 200);
    EXPECT_EQ(state({"camera"}), "1");
    EXPECT_THAT(m_system.cameras[0].log, ElementsAre("start", "stop"));
    EXPECT_THAT(m_system.cameras[1].log, ElementsAre("start"));
    EXPECT_EQ(setting("gain value range", "text"), "33");
    EXPECT_THAT(get("api/frame").headers, HasSubstr(R"({"number":3,"camera":1,)"));
}

TEST_F(ViewOfTwo, AValueForTheCameraBeforeIsRefused) {
    begin();
    choose("1");
    const Seen outcome =
        done("PUT", "api/settings", R"({"key":"gain value range","text":"7","camera":0})");
    EXPECT_EQ(outcome.at({"error", "code"}), "camera_changed");
    EXPECT_EQ(m_system.cameras[1].values["gain value range"], "33");
}

TEST_F(ViewOfTwo, ACameraThatIsNotThereLeavesTheOldOne) {
    begin();
    EXPECT_EQ(choose("7").at({"error", "code"}), "camera_not_found");
    EXPECT_EQ(state({"camera"}), "0");
    EXPECT_EQ(state({"live"}), "live");
}

TEST_F(ViewOfTwo, ALostOneIsSearchedForWhenItIsShownAgain) {
    waits({frame, lost, frame});
    begin();
    turns(2);
    EXPECT_EQ(choose("1").status, 200);
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_EQ(choose("0").status, 200);
    turns(2);
    EXPECT_EQ(state({"live"}), "live");
    EXPECT_THAT(m_system.cameras[0].log, ElementsAre("start"));
    EXPECT_THAT(eventLines(), HasSubstr("restored: "));
}

TEST_F(ViewOwner, SavesWhatLoadTakesAndDiffCompares) {
    begin();
    const Seen saved = done("GET", "api/settings.json", "");
    EXPECT_THAT(saved.headers, HasSubstr("attachment; filename=\"1A2B_settings.json\""));
    EXPECT_THAT(saved.body, HasSubstr(R"("schema": "camhost-settings/1")"));
    EXPECT_EQ(set("gain value range", "77").status, 200);
    EXPECT_EQ(done("POST", "api/diff", saved.body).body,
              R"({"differences":[{"key":"gain value range","saved":"10","now":"77"}]})");
    const Seen loaded = done("POST", "api/load", saved.body);
    EXPECT_EQ(loaded.at({"failed"}), "[]");
    EXPECT_EQ(setting("gain value range", "text"), "10");
    EXPECT_THAT(camera().log, Not(testing::Contains("stop")));
}

TEST_F(ViewOwner, LoadTellsWhatCouldNotBeSet) {
    begin();
    const Seen loaded =
        done("POST", "api/load",
             R"({"schema":"camhost-settings/1","serial":"1A2B","name":"","date":"",)"
             R"("settings":{"hue value range":"3","gain value range":"11"}})");
    EXPECT_EQ(loaded.at({"failed"}),
              R"([{"key":"hue value range","message":"the camera has no \"hue value range\""}])");
    EXPECT_EQ(setting("gain value range", "text"), "11");
}

TEST_F(ViewOwner, AFormatInALoadedFileStopsVideoMeanwhile) {
    begin();
    done("POST", "api/load",
         R"json({"schema":"camhost-settings/1","settings":{"videoformat":"Y800 (8x4)"}})json");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "videoformat=Y800 (8x4)", "start"));
}

TEST_F(ViewOwner, JobsAreDoneInTheOrderInWhichTheyCame) {
    begin();
    CPendingRequest first = ask("PUT", "api/settings", R"({"key":"gain value range","text":"1"})");
    CPendingRequest second = ask("PUT", "api/settings", R"({"key":"gain value range","text":"2"})");
    EXPECT_FALSE(first.look());
    turns(1);
    EXPECT_EQ(first.look()->status, 200);
    EXPECT_THAT(second.look()->body, HasSubstr(R"("before":"1","after":"2")"));
    EXPECT_THAT(camera().log, ElementsAre("start", "gain value range=1", "gain value range=2"));
}

TEST_F(ViewOwner, EndsWhenToldTo) {
    begin();
    turns(1);
    CPendingRequest end = ask("POST", "api/end", "{}");
    CPendingRequest waiting = ask("GET", "api/state?after=" + state({"version"}));
    EXPECT_FALSE(m_owner->turn());
    m_owner->finish();
    EXPECT_EQ(end.look()->status, 200);
    EXPECT_EQ(ask("POST", "api/live", R"({"live":true})").look()->at({"error", "code"}), "ended");
    EXPECT_TRUE(waiting.look()) << "nobody waits for what has ended";
    EXPECT_THAT(camera().log, ElementsAre("start", "stop"));
}

TEST_F(ViewOwner, AnAdapterThatWritesPastTheFrameEndsTheView) {
    camera().overrun = 100;
    begin();
    EXPECT_THROW(m_owner->run(), Failure);
    EXPECT_FALSE(camera().live);
}

TEST_F(ViewOwner, AFirstCameraThatDoesNotStartIsAFailure) {
    camera().startRefused = true;
    open();
    EXPECT_THROW(m_owner->begin(), Failure);
}

}  // namespace
}  // namespace camhost::test
