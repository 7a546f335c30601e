// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_counts.h"

#include <gtest/gtest.h>

namespace camhost {
namespace {

TEST(GrabCounts, ClosingLineTellsTheRateWithoutTheLoss) {
    GrabCounts counts;
    counts.asked = counts.frames = 100;
    counts.seconds = 6.6;
    counts.losses = 1;
    counts.lostSeconds = 3.2;
    counts.liveSpan = 3.3;
    EXPECT_EQ(closingLine(counts, "Raw8 BGGR as delivered"),
              "done: 100 frames in 6.6 s, 30.0 fps while live, timeouts 0, lost 1 (3.2 s), Raw8 "
              "BGGR as delivered");
}

TEST(GrabCounts, ClosingLineOfNothing) {
    EXPECT_EQ(closingLine({}, "Mono8"), "done: 0 frames in 0.0 s, timeouts 0, lost 0, Mono8");
}

TEST(GrabCounts, OneFrameHasNoRate) {
    GrabCounts counts;
    counts.asked = counts.frames = 1;
    counts.seconds = 0.05;
    EXPECT_EQ(closingLine(counts, "Mono8"), "done: 1 frame in 0.1 s, timeouts 0, lost 0, Mono8");
    EXPECT_FALSE(counts.framesPerSecond());
}

TEST(GrabCounts, ProgressLineHoldsWhatIsLeft) {
    GrabCounts counts;
    counts.asked = 100;
    counts.frames = 64;
    counts.timeouts = 1;
    counts.seconds = 2.1;
    counts.liveSpan = 1.96875;
    counts.bytesPerFrame = 1992294;
    EXPECT_EQ(progressLine(counts),
              "  64/100  32.0 fps  1.9 MiB/frame  timeouts 1  lost 0  eta 1.1 s");
}

}  // namespace
}  // namespace camhost
