// SPDX-License-Identifier: MIT
// What a claim about an adapter is: one line of the report, and the calls that decide it.
// Portable.
#pragma once

#include <span>
#include <string>

namespace camhost {

class CCheck;

// Thrown by a claim that has nothing to try itself on: a camera without such a setting, a
// single camera, an entry point that is missing.
struct NotSupported {
    std::string reason;
};

struct Claim {
    const char* name;
    void (*test)(CCheck& check);
};

inline void leaveAsItIs(CCheck& /*check*/) {}

// Claims that are tried in one state of the camera, in order. `leave` follows `enter` whatever
// came of the claims, and both are left out when no claim of the group is wanted.
struct ClaimGroup {
    const char* name;
    std::span<const Claim> claims;
    void (*enter)(CCheck& check) = leaveAsItIs;
    void (*leave)(CCheck& check) = leaveAsItIs;
};

}  // namespace camhost
