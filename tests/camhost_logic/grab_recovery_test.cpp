// SPDX-License-Identifier: MIT
// camhost grab when frames lie ready, when the camera comes back as after power-up, and
// with a second camera beside it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using namespace usual_waits;
const Wait readyFrame{0, HOST_STATUS_DONE, 0.0005, {}};

// The camera is back, with these texts.
Wait backWith(std::map<std::string, std::string> values) {
    return {0, HOST_STATUS_DONE, 0.125, {}, std::move(values)};
}

class GrabRecovery : public CCamhostTest {
protected:
    Outcome grab(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"-c", "1A2B", "grab", "--format", "none"});
        return camhost(arguments);
    }
};

TEST_F(GrabRecovery, WhatTheRunSetIsWrittenAgain) {
    camera().waits = {frame, lost, backWith({{"gain value range", "10"}}), frame};
    const Outcome outcome = grab({"-n", "2", "--set", "gain value range=30", "--reapply"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err,
              "gain value range: 10 -> 30\n"
              "lost 1A2B after frame 1; searching ...\n"
              "restored after 0.3 s\n"
              "gain value range: 10 -> 30\n"
              "1 setting written again\n");
    EXPECT_EQ(outcome.out,
              "done: 2 frames in 0.6 s, 8.0 fps while live, timeouts 0, lost 1 (0.3 s), "
              "dropped 1, Mono8\n");
    EXPECT_THAT(camera().log, ElementsAre("gain value range=30", "start", "gain value range=30",
                                          "stop", "close"));
}

TEST_F(GrabRecovery, ALossAtTheStartIsWaitedOutToo) {
    camera().goesAtStart = true;
    camera().waits = {lost, frame, frame};
    const Outcome outcome = grab({"-n", "2", "--on-loss", "10"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("done: 2 frames in "));
    EXPECT_THAT(outcome.out, HasSubstr(" lost 1 ("));
}

TEST_F(GrabRecovery, ACameraThatGoesAtTheStartHasToComeBackWithTheSamePictures) {
    camera().goesAtStart = true;
    Wait back = frame;
    back.width = 8;
    camera().waits = {lost, back, frame};
    const Outcome outcome = grab({"-n", "2", "--on-loss", "10"});
    EXPECT_THAT(outcome.err, HasSubstr("the camera delivers 8x2 Mono8 now, no longer 4x2 Mono8"));
}

TEST_F(GrabRecovery, ALossWithinOneWaitIsSeenByWhatItUndid) {
    camera().waits = {frame, timeout, backWith({{"gain value range", "10"}}), frame};
    const Outcome outcome = grab({"-n", "2", "--set", "gain value range=30", "--reapply"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err,
              "gain value range: 10 -> 30\n"
              "gain value range: 10 -> 30\n"
              "1 setting written again\n");
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 1, lost 0, dropped 1, Mono8\n"));
}

TEST_F(GrabRecovery, ATimeOutThatUndidNothingCostsNoFrame) {
    camera().waits = {frame, timeout, frame, timeout, frame};
    const Outcome outcome = grab({"-n", "3", "--set", "gain value range=30", "--reapply"});
    EXPECT_THAT(outcome.err, Not(HasSubstr("written again")));
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 2, lost 0, dropped 0, Mono8\n"));
}

TEST_F(GrabRecovery, WhatDoesNotBecomeAsAskedCostsOneFrameAlone) {
    camera().waits = {frame,   timeout, backWith({{"gain value range", "10"}}),
                      timeout, frame,   frame};
    camera().readBack["gain value range"] = "20";
    const Outcome outcome = grab({"-n", "3", "--set", "gain value range=30", "--reapply"});
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 2, lost 0, dropped 1, Mono8\n"));
}

TEST_F(GrabRecovery, WithoutTheOptionNothingIsWritten) {
    camera().waits = {frame, lost, backWith({{"gain value range", "10"}}), frame};
    const Outcome outcome = grab({"-n", "2", "--set", "gain value range=30"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, Not(HasSubstr("dropped")));
    EXPECT_THAT(camera().log, ElementsAre("gain value range=30", "start", "stop", "close"));
}

TEST_F(GrabRecovery, WhatWasInForceAtTheLossIsWrittenAgain) {
    camera().waits.assign(6, frame);
    camera().waits.front().values = {{"trigger mode strings", "Level"}};
    camera().waits.push_back(lost);
    camera().waits.push_back(backWith({{"trigger mode strings", "Edge"}}));
    const Outcome outcome = grab({"-n", "7", "--reapply"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.err, HasSubstr("\ntrigger mode strings: Edge -> Level\n"
                                       "1 setting written again\n"));
}

TEST_F(GrabRecovery, ARunsOwnSettingsAreWrittenAgainThoughALossWentUnseen) {
    camera().waits.assign(6, frame);
    camera().waits.front().values = {{"gain value range", "10"}};
    camera().waits.push_back(lost);
    const Outcome outcome =
        grab({"-n", "7", "--reapply", "--set", "gain value range=30", "--json"});
    EXPECT_THAT(outcome.out,
                HasSubstr("\"dropped\":1,\"timeouts\":0,\"lost\":1,\"lost_seconds\":"));
    EXPECT_THAT(outcome.out,
                HasSubstr("\"pixel_type\":\"Mono8\",\"reapplied\":[{\"key\":\"gain value range\","
                          "\"asked\":\"30\",\"before\":\"10\",\"after\":\"30\","
                          "\"matches\":true}],\"files\":[]"));
}

TEST_F(GrabRecovery, NothingIsWrittenWhereNothingDiffers) {
    camera().waits = {frame, lost};
    const Outcome outcome = grab({"-n", "2", "--reapply"});
    EXPECT_THAT(outcome.err, HasSubstr("\nno setting had to be written again\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(GrabRecovery, WhatAnAutomaticGovernsIsItsOwn) {
    camera().waits = {frame, lost, backWith({{"exposure value abs", "0.500000"}})};
    grab({"-n", "2", "--reapply"});
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(GrabRecovery, AnAutomaticThatWasOffGoesOffAgain) {
    camera().waits = {
        frame, lost,
        backWith({{"exposure auto switch", "true"}, {"exposure value abs", "0.500000"}})};
    grab({"-n", "2", "--reapply", "--manual", "--set", "exposure value abs=0.010000"});
    EXPECT_THAT(
        camera().log,
        ElementsAre("exposure auto switch=false", "exposure value abs=0.010000", "start",
                    "exposure auto switch=false", "exposure value abs=0.010000", "stop", "close"));
}

TEST_F(GrabRecovery, ARefusalAfterARestoreIsAWarning) {
    camera().waits = {frame, lost, backWith({{"trigger mode strings", "Level"}})};
    camera().refusals["trigger mode strings"] = "not just now";
    const Outcome outcome = grab({"-n", "2", "--reapply", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.err, HasSubstr("warning: trigger mode strings: not just now\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\"reapplied\":[],\"files\":[]},\"warnings\":[\"trigger "
                                       "mode strings: not just now\"]"));
}

TEST_F(GrabRecovery, ThePixelFormatIsWrittenWhileVideoIsStopped) {
    camera().waits = {frame, lost, backWith({{"pixelformat", "Mono8"}})};
    EXPECT_EQ(grab({"-n", "2", "--reapply", "--pixelformat", "Raw8"}).exit, 0);
    EXPECT_THAT(camera().log, ElementsAre("pixelformat=Raw8", "start", "stop", "pixelformat=Raw8",
                                          "start", "stop", "close"));
}

TEST_F(GrabRecovery, VideoThatDoesNotStartAgainIsOne) {
    camera().waits = {frame, lost, backWith({{"pixelformat", "Mono8"}})};
    camera().mostStarts = 1;
    const Outcome outcome = grab({"-n", "2", "--reapply", "--pixelformat", "Raw8"});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("done: 1 frame in "));
    EXPECT_THAT(outcome.err, HasSubstr("error: live video does not start again: no bandwidth\n"));
}

TEST_F(GrabRecovery, AFrameThatLayReadyAtTheStartIsDropped) {
    camera().waits = {readyFrame, frame, frame};
    const Outcome outcome = grab({"-n", "2", "--fresh"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "done: 2 frames in 0.3 s, 8.0 fps while live, timeouts 0, lost 0, dropped 1, "
              "Mono8\n");
    EXPECT_THAT(grab({"--fresh", "--json"}).out, HasSubstr("\"dropped\":0,\"timeouts\":0"));
}

TEST_F(GrabRecovery, WithoutTheOptionAFrameThatLayReadyIsTaken) {
    camera().waits = {readyFrame, frame, frame};
    const Outcome outcome = grab({"-n", "2", "--json"});
    EXPECT_THAT(outcome.out,
                HasSubstr("\"frames\":2,\"asked\":2,\"skipped\":0,\"seconds\":0.1255"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("dropped")));
}

TEST_F(GrabRecovery, AFrameThatLayReadyAfterATimeoutOrALossIsDropped) {
    camera().waits = {frame, timeout, readyFrame, frame, lost, readyFrame, frame};
    EXPECT_THAT(grab({"-n", "3", "--fresh"}).out,
                HasSubstr("done: 3 frames in 1.6 s, 1.6 fps while live, timeouts 1, lost 1 (0.2 "
                          "s), dropped 2, "));
}

TEST_F(GrabRecovery, AFastCameraIsNotTakenForALateOne) {
    camera().waits.assign(20, readyFrame);
    EXPECT_THAT(grab({"-n", "4", "--fresh"}).out, HasSubstr(", dropped 16, Mono8\n"));
    camera().waits = {frame, readyFrame, frame};
    EXPECT_THAT(grab({"-n", "3", "--fresh"}).out, HasSubstr(", dropped 0, Mono8\n"));
}

TEST_F(GrabRecovery, AnotherCameraIsLeftAlone) {
    m_system.cameras.push_back(ordinaryCamera());
    MadeUpCamera& other = m_system.cameras[1];
    other.serial = "77C01";
    other.waits.assign(1000, lost);
    camera().waits = {frame, lost, backWith({{"gain value range", "10"}}), frame};
    const Outcome outcome = grab({"-n", "2", "--set", "gain value range=30", "--reapply"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr("lost 1 (0.3 s), dropped 1"));
    EXPECT_THAT(other.log, ElementsAre("close"));
    EXPECT_EQ(other.values, ordinaryCamera().values);
    EXPECT_EQ(other.waits.size(), 1000U);
}

}  // namespace
}  // namespace camhost::test
