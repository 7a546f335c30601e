// SPDX-License-Identifier: MIT
// What a bench found, and how it is told. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/measure/rate_limit.h"
#include "camhost/measure/sample_series.h"
#include "camhost/pictures/frame_layout.h"

namespace camhost {

struct BenchFigures {
    GrabCounts counts;
    FrameLayout layout;
    std::optional<double> askedRate;
    std::optional<double> reportedRate;
    std::optional<double> exposure;
    CSampleSeries intervals;  // from frame to frame, without losses between
    CSampleSeries waits;      // that brought a frame
    CSampleSeries copies;
    double timedOut = 0.0;  // seconds
    double missedByHost = 0.0;
    double missedByCopies = 0.0;
    std::optional<double> processorSeconds;

    // Nothing where the camera tells no rate, or there was none.
    std::optional<RateFacts> rateFacts() const;
    double bytesPerSecond() const;
};

// Since the line before.
struct BenchSecond {
    double at = 0.0;  // seconds from the start
    double seconds = 0.0;
    std::uint64_t frames = 0;
    double waited = 0.0;  // seconds for these frames
    double copied = 0.0;  // seconds
    std::optional<double> processorSeconds;
};
// "  1.0 s  30 frames  30.0 fps  35.2 MiB/s  wait 32.9 ms  copy 0.4 ms  cpu 3 %  timeouts 0
// lost 0"
std::string secondLine(const BenchSecond& second, const GrabCounts& counts);

std::vector<std::string> benchLines(const BenchFigures& figures);
CJson benchJson(const BenchFigures& figures);

}  // namespace camhost
