// SPDX-License-Identifier: MIT
// What a grab counts, and the lines that tell it: progress and closing line.
// Time-outs, losses and refusals are kept apart. Portable.
#pragma once

#include <cstdint>
#include <string>

namespace camhost {

struct GrabCounts {
    std::uint64_t asked = 0;
    std::uint64_t frames = 0;
    std::uint64_t skipped = 0;
    std::uint64_t timeouts = 0;
    std::uint64_t losses = 0;
    double seconds = 0.0;      // from start to end
    double lostSeconds = 0.0;  // of these without a device
    std::size_t bytesPerFrame = 0;

    double framesPerSecond() const;  // while the device was there
};

// "  64/100  29.9 fps  1.9 MiB/frame  timeouts 0  lost 0  eta 1.2 s"
std::string progressLine(const GrabCounts& counts);

// "done: 100 frames in 6.6 s, 29.9 fps while live, timeouts 0, lost 0, Mono8"
std::string closingLine(const GrabCounts& counts, const std::string& pixelText);

}  // namespace camhost
