// SPDX-License-Identifier: MIT
// What a grab counts, and the lines that tell it: losses, progress and closing line.
// Time-outs, losses and refusals are kept apart. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace camhost {

struct GrabCounts {
    std::uint64_t asked = 0;
    std::uint64_t frames = 0;
    std::uint64_t skipped = 0;
    std::optional<std::uint64_t> dropped;  // where frames may be dropped at all
    std::uint64_t timeouts = 0;
    std::uint64_t losses = 0;
    double seconds = 0.0;      // from start to end
    double lostSeconds = 0.0;  // of these without a device
    double liveSpan = 0.0;     // from the first frame to the last, without losses between
    std::size_t bytesPerFrame = 0;

    // While the device was there; one frame alone has none.
    std::optional<double> framesPerSecond() const;
};

// How a run over live video ends.
enum class GrabEnd { Complete, TimedOut, Lost, Interrupted };

// "lost 1A2B after frame 71", "restored after 3.2 s"
std::string lostLine(const std::string& camera, std::uint64_t frames);
std::string restoredLine(double seconds);

// "  64/100  29.9 fps  1.9 MiB/frame  timeouts 0  lost 0  eta 1.2 s"
std::string progressLine(const GrabCounts& counts);

// "done: 100 frames in 6.6 s, 29.9 fps while live, timeouts 0, lost 0, Mono8"
std::string closingLine(const GrabCounts& counts, const std::string& pixelText);

}  // namespace camhost
