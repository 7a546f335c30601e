// SPDX-License-Identifier: MIT
// camhost bench on a made-up adapter with a clock of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using namespace usual_waits;

class Bench : public CCamhostTest {
protected:
    Outcome bench(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "bench");
        return camhost(arguments);
    }
};

TEST_F(Bench, TotalsTellRatesTimesDataAndCounts) {
    const Outcome outcome = bench({"-t", "2"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out,
              "rate      asked nothing, reported 30.00 fps, measured 8.00 fps\n"
              "limit     the camera: it delivers fewer frames than its rate of 30.0 fps\n"
              "interval  min 125.00  mean 125.00  p50 125.00  p95 125.00  p99 125.00  max 125.00 "
              "ms\n"
              "wait      min 125.00  mean 125.00  p50 125.00  p95 125.00  p99 125.00  max 125.00 "
              "ms\n"
              "copy      min 0.00  mean 0.00  p50 0.00  p95 0.00  p99 0.00  max 0.00 ms\n"
              "data      0.0 MiB/s, 8 bytes a frame, 4x2 Mono8\n"
              "cpu       25.0 % of one core, 0.50 s\n"
              "done: 16 frames in 2.0 s, timeouts 0, lost 0\n");
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Bench, ALineASecondIsAMessage) {
    camera().waits = {frame, timeout, frame, frame, frame, frame};
    EXPECT_EQ(bench({"-t", "3"}).err,
              "   1.1 s  1 frames  0.9 fps  0.0 MiB/s  wait 125.0 ms  copy 0.0 ms  cpu 25 %  "
              "timeouts 1  lost 0\n"
              "   2.0 s  7 frames  8.0 fps  0.0 MiB/s  wait 125.0 ms  copy 0.0 ms  cpu 25 %  "
              "timeouts 1  lost 0\n"
              "   3.0 s  8 frames  8.0 fps  0.0 MiB/s  wait 125.0 ms  copy 0.0 ms  cpu 25 %  "
              "timeouts 1  lost 0\n");
    camera().waits = {timeout};
    EXPECT_EQ(bench({"-q", "-t", "1.5"}).err, "");
    camera().waits = {timeout};
    EXPECT_EQ(bench({"-t", "1.5"}).err,
              "   1.0 s  0 frames  0.0 fps  0.0 MiB/s  cpu 25 %  timeouts 1  lost 0\n");
}

TEST_F(Bench, JsonHoldsTheSame) {
    const std::string times =
        "{\"min\":125.0,\"mean\":125.0,\"p50\":125.0,\"p95\":125.0,\"p99\":125.0,\"max\":125.0}";
    EXPECT_EQ(bench({"--json", "-t", "2"}).out,
              "{\"schema\":\"camhost/1\",\"command\":\"bench\",\"camera\":{\"index\":0,"
              "\"serial\":\"1A2B\",\"name\":\"SIM Mono 23\"},\"result\":{\"frames\":16,"
              "\"seconds\":2.0,\"reported_fps\":30.0,\"fps\":8.0,\"limit\":\"camera\","
              "\"limit_text\":\"the camera: it delivers fewer frames than its rate of 30.0 fps\","
              "\"interval_ms\":" +
                  times + ",\"wait_ms\":" + times +
                  ",\"copy_ms\":{\"min\":0.0,\"mean\":0.0,\"p50\":0.0,\"p95\":0.0,\"p99\":0.0,"
                  "\"max\":0.0},\"mib_per_second\":6.103515625e-05,\"bytes_per_frame\":8,"
                  "\"cpu_seconds\":0.5,\"cpu_percent\":25.0,\"timeouts\":0,\"lost\":0,"
                  "\"lost_seconds\":0.0,\"width\":4,\"height\":2,\"pixel_type\":\"Mono8\"},"
                  "\"exit\":0}\n");
}

TEST_F(Bench, TheRateAskedForAndTheOneReadBackAreTold) {
    camera().readBack["framerate"] = "14.990000";
    const Outcome outcome =
        bench({"-n", "3", "--set", "framerate=15", "--pixelformat", "Mono8", "--json"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.err, StartsWith("pixelformat: Mono8 -> Mono8\n"
                                        "framerate: 30.000000 -> 14.990000\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\"frames\":3,\"seconds\":0.375,\"asked_fps\":15.0,"
                                       "\"reported_fps\":14.99,\"fps\":8.0,"));
    EXPECT_THAT(bench({"-n", "3", "--set", "FrameRate=15"}).out,
                StartsWith("rate      asked 15.00 fps, reported 14.99 fps, measured 8.00 fps\n"));
}

TEST_F(Bench, AHintOfASettingIsABenchs) {
    EXPECT_THAT(bench({"--set", "exposure value abs=0.01"}).err,
                HasSubstr("camhost bench --manual --set \"exposure value abs=0.01\""));
}

TEST_F(Bench, TheCamerasOwnRateIsNamed) {
    camera().values["framerate"] = "8.000000";
    EXPECT_THAT(bench({"-n", "9"}).out, HasSubstr("\nlimit     the camera's rate of 8.0 fps\n"));
    camera().values["framerate"] = "4.000000";
    EXPECT_THAT(bench({"-n", "9"}).out,
                HasSubstr("\nlimit     nothing: frames come faster than the camera's rate\n"));
}

TEST_F(Bench, ALongExposureIsNamed) {
    camera().values["exposure value abs"] = "0.125000";
    EXPECT_THAT(bench({"-n", "9"}).out,
                HasSubstr("\nlimit     the exposure: 125.0 ms, longer than a frame of 30.0 fps, "
                          "which is 33.3 ms\n"));
}

TEST_F(Bench, TimeoutsAreNamed) {
    camera().values["framerate"] = "8.000000";
    camera().waits = {frame, timeout, timeout, frame};
    EXPECT_THAT(bench({"-n", "2"}).out,
                HasSubstr("\nlimit     time-outs: 2.0 s in which no frame came\n"));
}

TEST_F(Bench, SlowCopiesAreNamed) {
    camera().values["framerate"] = "8.000000";
    camera().copySeconds = 0.25;
    const Outcome outcome = bench({"-n", "4"});
    EXPECT_THAT(outcome.out, HasSubstr("\nlimit     copying: it takes longer than a frame of 8.0 "
                                       "fps, which is 125.0 ms\ninterval  min 375.00  "));
    EXPECT_THAT(outcome.out, HasSubstr("\ncopy      min 250.00  mean 250.00  "));
}

TEST_F(Bench, ACameraWithoutARateHasNoLimit) {
    camera().values.erase("framerate");
    const Outcome outcome = bench({"-n", "2"});
    EXPECT_THAT(outcome.out,
                StartsWith("rate      asked nothing, reported nothing, measured 8.00 fps\n"
                           "interval  "));
    EXPECT_THAT(bench({"-n", "2", "--json"}).out, Not(HasSubstr("\"limit\"")));
}

TEST_F(Bench, AnIntervalOverALossIsNone) {
    camera().waits = {frame, frame, lost, lost, frame, frame};
    const Outcome outcome = bench({"-n", "4"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "lost 1A2B after frame 2; searching ...\nrestored after 0.5 s\n");
    EXPECT_THAT(outcome.out, HasSubstr("\ninterval  min 125.00  mean 125.00  p50 125.00  p95 "
                                       "125.00  p99 125.00  max 125.00 ms\n"));
    EXPECT_THAT(outcome.out, HasSubstr("done: 4 frames in 0.9 s, timeouts 0, lost 1 (0.5 s)\n"));
}

TEST_F(Bench, ALossForGoodIsFive) {
    camera().waits.assign(1000, lost);
    EXPECT_EQ(bench({"-n", "4", "--on-loss", "2"}).exit, 5);
    camera().waits.assign(1000, lost);
    const Outcome outcome = bench({"-t", "3"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.err, HasSubstr("error: the camera is lost; 0 frames\n"));
    camera().waits.assign(1000, lost);
    EXPECT_EQ(bench({"-t", "3", "--on-loss", "fail"}).exit, 5);
}

TEST_F(Bench, NoFrameAtAllIsFour) {
    camera().values["trigger enable switch"] = "true";
    camera().waits.assign(3, timeout);
    const Outcome outcome = bench({"-t", "3"});
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_THAT(outcome.err, HasSubstr("error: no frame in 3.0 s; 0 frames\n"
                                       "hint:  trigger enable is on: no trigger arrived?\n"));
    EXPECT_THAT(outcome.out,
                StartsWith("rate      asked nothing, reported 30.00 fps, measured nothing\n"
                           "data      0.0 MiB/s, 8 bytes a frame, 4x2 Mono8\n"));
}

TEST_F(Bench, FewerFramesAreSix) {
    camera().waits = {frame, timeout, timeout};
    const Outcome outcome = bench({"-n", "3", "--timeout", "2"});
    EXPECT_EQ(outcome.exit, 6);
    EXPECT_THAT(outcome.err, HasSubstr("error: no frame in 2.0 s; 1 of 3 frames\n"));
}

TEST_F(Bench, AnInterruptionStillPrintsTheTotals) {
    m_system.interruptAfter = m_system.time + 0.95;
    const Outcome outcome = bench({});
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, HasSubstr("done: 8 frames in 1.0 s, timeouts 0, lost 0\n"));
    EXPECT_THAT(outcome.err, HasSubstr("error: interrupted after 8 frames\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Bench, TotalsAreToldWhenAWaitIsRefused) {
    camera().waits = {frame, {1, HOST_STATUS_DONE, 0.0, "not now"}};
    const Outcome outcome = bench({});
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_THAT(outcome.out, HasSubstr("done: 1 frame in 0.1 s, timeouts 0, lost 0\n"));
    EXPECT_THAT(outcome.err, HasSubstr("error: waiting for a frame was refused: not now\n"));
    EXPECT_THAT(camera().log, ElementsAre("start", "stop", "close"));
}

TEST_F(Bench, ItLastsFiveSecondsUnlessSaid) {
    EXPECT_THAT(bench({}).out, HasSubstr("done: 40 frames in 5.0 s, "));
    const Outcome outcome = bench({"-t", "2", "-n", "3"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_THAT(outcome.err,
                HasSubstr("error: a bench is -t seconds or -n frames long, not both\n"));
}

TEST_F(Bench, SizesAndCopiesThatCanNotBeAreErrors) {
    camera().width = 0;
    EXPECT_EQ(bench({}).err, "error: the camera reports a picture of 0x2\n");
    camera().width = 4;
    camera().overrun = 1;
    EXPECT_THAT(bench({"-n", "1"}).err,
                HasSubstr("error: the adapter wrote past the frame buffer\n"));
}

}  // namespace
}  // namespace camhost::test
