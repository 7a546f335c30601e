// SPDX-License-Identifier: MIT
// The ways in which each call into the capture library can fail, and what of the failures
// themselves looks like a fault of the adapter.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "tests/visits/visit_ground.h"

struct WayToFail {
    std::int32_t kind;  // of virtualCamerasFailCall
    const char* name;
    // What leaves a call of the host where the failure passes out as an exception.
    std::string_view thrown;
};
inline constexpr std::int32_t failingCode = -2147220991;  // 0x80040201
inline constexpr const char* failingText = "broken";

// None for what the library only tells of.
std::vector<WayToFail> waysToFail(const visits::RecordedCall& call);

// Whether a failure of the operation makes even a faultless user of the library break its
// rule: one who is lied to about the camera's state, or given back what it then refuses.
bool explainsMisuse(std::string_view operation, std::string_view misuse);
// Whether it leaves another camera open where the lost one was looked for. `isLasting`: it
// fails from some call on.
bool explainsForeignFrames(std::string_view operation, const WayToFail& way, bool isLasting);
// Whether it leaves buffers locked that nothing can unlock.
bool explainsLocks(std::string_view operation, bool isLasting);
