// SPDX-License-Identifier: MIT
// camhost watch on a made-up adapter with a clock of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "camhost/application/application.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using namespace usual_waits;

constexpr const char* begin = "watching 1A2B \"SIM Mono 23\" since 2024-05-06T07:08:09Z\n";
constexpr const char* beginJson =
    "{\"schema\":\"camhost/1\",\"event\":\"start\",\"seconds\":0.0,"
    "\"date\":\"2024-05-06T07:08:09Z\",\"camera\":{\"index\":0,\"serial\":\"1A2B\","
    "\"name\":\"SIM Mono 23\"}}\n";

std::string documentWith(const std::string& totals) {
    return "{\"schema\":\"camhost/1\",\"command\":\"watch\",\"camera\":{\"index\":0,"
           "\"serial\":\"1A2B\",\"name\":\"SIM Mono 23\"},\"result\":{\"date\":"
           "\"2024-05-06T07:08:09Z\"," +
           totals + "}\n";
}

class Watch : public CCamhostTest {
protected:
    Outcome watch(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "watch");
        return camhost(arguments);
    }
};

TEST_F(Watch, WhereNothingHappensOnlyBeginAndTotalsAreTold) {
    const Outcome outcome = watch({"-t", "2"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, begin + std::string("watched for 2.0 s: 16 frames, 8.0 fps while live, "
                                               "timeouts 0, lost 0, changes 0\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Watch, ALossAndItsEndAreTold) {
    camera().waits = {frame, lost, lost, frame};
    EXPECT_EQ(watch({"-t", "1"}).out,
              begin + std::string("    0.125  lost after frame 1; searching ...\n"
                                  "    0.650  restored after 0.5 s\n"
                                  "watched for 1.0 s: 5 frames, 10.7 fps while live, timeouts 0, "
                                  "lost 1 (0.5 s), changes 0\n"));
    camera().waits = {frame, lost, lost, frame};
    const Outcome outcome = watch({"-t", "0.6", "--json"});
    EXPECT_EQ(outcome.out,
              beginJson +
                  std::string("{\"schema\":\"camhost/1\",\"event\":\"lost\",\"seconds\":0.125,"
                              "\"frames\":1}\n"
                              "{\"schema\":\"camhost/1\",\"event\":\"restored\",\"seconds\":0.65,"
                              "\"lost_seconds\":0.525}\n") +
                  documentWith("\"frames\":2,\"seconds\":0.65,\"timeouts\":0,\"lost\":1,"
                               "\"lost_seconds\":0.525,\"changes\":0},\"exit\":0"));
}

TEST_F(Watch, TimeoutsInARowAreToldOnceWithTheirEnd) {
    camera().waits = {frame, timeout, timeout, frame};
    EXPECT_EQ(watch({"-t", "2.2"}).out,
              begin + std::string("    1.125  time-out: no frame in 1.0 s\n"
                                  "    2.250  frames again after 2.1 s, time-outs 2\n"
                                  "watched for 2.2 s: 2 frames, 0.5 fps while live, timeouts 2, "
                                  "lost 0, changes 0\n"));
    camera().waits = {frame, timeout, timeout, frame};
    camera().values["trigger enable switch"] = "true";
    EXPECT_THAT(watch({"-t", "2.2", "--json"}).out,
                HasSubstr("{\"schema\":\"camhost/1\",\"event\":\"timeout\",\"seconds\":1.125,"
                          "\"silent_seconds\":1.0,\"hint\":\"trigger enable is on: no trigger "
                          "arrived?\"}\n"
                          "{\"schema\":\"camhost/1\",\"event\":\"frames\",\"seconds\":2.25,"
                          "\"silent_seconds\":2.125,\"timeouts\":2}\n"));
}

TEST_F(Watch, SettingsThatChangeAreToldOldAndNew) {
    camera().waits = {frame};
    camera().waits.front().values = {{"gain value range", "12"}, {"exposure value abs", "0.5"}};
    EXPECT_EQ(watch({"-t", "1"}).out,
              begin + std::string("    0.500  exposure value abs: 0.033333 -> 0.5\n"
                                  "    0.500  gain value range: 10 -> 12\n"
                                  "watched for 1.0 s: 8 frames, 8.0 fps while live, timeouts 0, "
                                  "lost 0, changes 2\n"));
    camera().waits = {frame};
    camera().waits.front().values = {{"gain value range", "13"}};
    EXPECT_EQ(watch({"-t", "0.6", "--json"}).out,
              beginJson +
                  std::string("{\"schema\":\"camhost/1\",\"event\":\"changed\",\"seconds\":0.5,"
                              "\"key\":\"gain value range\",\"before\":\"12\",\"after\":\"13\"}"
                              "\n") +
                  documentWith("\"frames\":5,\"seconds\":0.625,\"fps\":8.0,\"timeouts\":0,"
                               "\"lost\":0,\"lost_seconds\":0.0,\"changes\":1},\"exit\":0"));
}

TEST_F(Watch, SettingsAreReadTwiceASecondAtMost) {
    camera().waits.assign(16, frame);
    for (std::size_t i = 0; i < 16; ++i) {
        camera().waits[i].values = {{"gain value range", std::to_string(20 + i)}};
    }
    EXPECT_EQ(watch({"-t", "2"}).out,
              begin + std::string("    0.500  gain value range: 10 -> 23\n"
                                  "    1.000  gain value range: 23 -> 27\n"
                                  "    1.500  gain value range: 27 -> 31\n"
                                  "watched for 2.0 s: 16 frames, 8.0 fps while live, timeouts 0, "
                                  "lost 0, changes 3\n"));
}

TEST_F(Watch, LimitsAndWhatCanNotBeReadAreLeftOut) {
    camera().waits = {frame};
    camera().waits.front().values = {{"gain value range max", "12"}};
    camera().throwingCode.insert("framerate");
    EXPECT_THAT(watch({"-t", "1"}).out, HasSubstr("changes 0\n"));
}

TEST_F(Watch, TheSettingsOfACameraThatIsBackAreToldAsTheyAre) {
    camera().waits = {frame, lost, frame};
    camera().waits[2].values = {{"gain value range", "0"}};
    EXPECT_EQ(watch({"-t", "0.7"}).out,
              begin + std::string("    0.125  lost after frame 1; searching ...\n"
                                  "    0.450  restored after 0.3 s\n"
                                  "    0.575  gain value range: 10 -> 0\n"
                                  "watched for 0.7 s: 4 frames, 12.0 fps while live, timeouts 0, "
                                  "lost 1 (0.3 s), changes 1\n"));
}

TEST_F(Watch, AReturnThatBringsNoFrameWasSilentForAllItsWait) {
    camera().waits = {frame, lost, timeout, frame};
    EXPECT_EQ(watch({"-t", "1.6"}).out,
              begin + std::string("    0.125  lost after frame 1; searching ...\n"
                                  "    1.325  restored after 1.2 s\n"
                                  "    1.325  time-out: no frame in 1.0 s\n"
                                  "    1.450  frames again after 1.1 s, time-outs 1\n"
                                  "watched for 1.7 s: 4 frames, 8.0 fps while live, timeouts 1, "
                                  "lost 1 (1.2 s), changes 0\n"));
}

TEST_F(Watch, SettingsOfACameraThatIsGoneAreNotRead) {
    camera().waits = {frame, timeout, lost, frame};
    camera().waits[1].values = {{"framerate", "0.000000"}, {"videoformat", ""}};
    camera().waits[1].missing = true;
    camera().waits[3].values = {{"framerate", "30.000000"}, {"videoformat", "Y800 (4x2)"}};
    EXPECT_EQ(watch({"-t", "2"}).out,
              begin + std::string("    1.125  time-out: no frame in 1.0 s\n"
                                  "    1.125  lost after frame 1; searching ...\n"
                                  "    1.450  restored after 0.3 s\n"
                                  "watched for 2.1 s: 7 frames, 3.7 fps while live, timeouts 1, "
                                  "lost 1 (0.3 s), changes 0\n"));
}

TEST_F(Watch, CtrlCIsItsCommonEnd) {
    m_system.interruptAfter = m_system.time + 0.95;
    const Outcome outcome = watch({});
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("watched for 1.0 s: 8 frames, "));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
    m_system.interruptAfter = m_system.time + 0.95;
    const Outcome json = watch({"--json"});
    EXPECT_THAT(json.out, Not(HasSubstr("\"error\"")));
    EXPECT_THAT(json.out, HasSubstr("\"exit\":130}\n"));
}

TEST_F(Watch, EndsWhenNobodyReadsWhatItTells) {
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(std::ios::badbit);
    const double before = m_system.time;
    EXPECT_EQ(runApplication({"watch", "-t", "1000"}, m_system, out, err), 1);
    EXPECT_LT(m_system.time, before + 1.0);
    EXPECT_THAT(err.str(), HasSubstr("error: can not write to the output\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Watch, NoFrameAtAllIsFour) {
    camera().waits.assign(2, timeout);
    const Outcome outcome = watch({"-t", "2"});
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_EQ(outcome.err, "error: no frame in 2.0 s; 0 frames\n");
}

TEST_F(Watch, ACameraThatIsLostAtTheEndIsFive) {
    camera().waits.assign(1000, lost);
    camera().waits.push_front(frame);
    const Outcome outcome = watch({"-t", "30"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_EQ(outcome.err, "error: the camera is lost; 1 frame\n");
}

TEST_F(Watch, ARefusedWaitEndsItWithTheTotals) {
    camera().waits = {frame, {1, HOST_STATUS_DONE, 0.0, "not now"}};
    const Outcome outcome = watch({});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("watched for 0.1 s: 1 frame, timeouts 0, lost 0, "));
    EXPECT_EQ(outcome.err, "error: waiting for a frame was refused: not now\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Watch, SizesAndCopiesThatCanNotBeAreErrors) {
    camera().height = 0;
    EXPECT_EQ(watch({}).err, "error: the camera reports a picture of 4x0\n");
    camera().height = 2;
    camera().overrun = 1;
    EXPECT_THAT(watch({"-t", "1"}).err,
                HasSubstr("error: the adapter wrote past the frame buffer\n"));
}

}  // namespace
}  // namespace camhost::test
