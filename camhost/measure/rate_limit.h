// SPDX-License-Identifier: MIT
// What keeps frames from coming faster than they did. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace camhost {

enum class RateLimit {
    None,       // nothing: they came faster than the camera's rate
    Rate,       // the camera's rate
    Exposure,   // it is longer than a frame of that rate
    Timeouts,   // seconds in which none came
    Copy,       // copies that took longer than a frame
    LateWaits,  // waits that began when more than a frame had gone by
    Camera      // it delivers fewer than it says
};

struct RateFacts {
    double reported = 0.0;           // frames per second
    double measured = 0.0;           // frames per second
    std::optional<double> exposure;  // seconds
    double span = 0.0;               // seconds from the first frame to the last
    double timedOut = 0.0;           // seconds
    double missedByHost = 0.0;       // frames of the reported rate between two waits
    double missedByCopies = 0.0;     // of these where copying was most of it
};

RateLimit limitOf(const RateFacts& facts);
// "rate", "late_waits"
const char* limitName(RateLimit limit);
// For people, with the numbers that it rests on.
std::string limitText(RateLimit limit, const RateFacts& facts);

}  // namespace camhost
