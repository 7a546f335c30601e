// SPDX-License-Identifier: MIT
// Tries the claims, and what came of each. Portable.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "camhost/check/check.h"

namespace camhost {

enum class Outcome { Holds, NotSupported, Fails };

struct Finding {
    std::string group;
    std::string name;
    Outcome outcome = Outcome::Holds;
    std::vector<std::string> reasons{};
    double seconds = 0.0;
};

struct Counts {
    std::uint32_t total = 0;
    std::uint32_t holding = 0;
    std::uint32_t notSupported = 0;
    std::uint32_t failing = 0;
};

Counts countsOf(const std::vector<Finding>& findings);

struct RunWatchers {
    std::function<void(const ClaimGroup&)> group;                // before its first claim
    std::function<void(const ClaimGroup&, const Claim&)> claim;  // before it is tried
    std::function<void(const Finding&)> finding;
};

// Those whose "group: name" matches the pattern; all for the empty one. Ends early when the
// user interrupts.
std::vector<Finding> runClaims(CCheck& check, const std::string& pattern,
                               const RunWatchers& watchers);

}  // namespace camhost
