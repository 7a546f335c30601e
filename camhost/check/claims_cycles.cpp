// SPDX-License-Identifier: MIT
// Starts and stops in a row, and what they leave behind.
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

constexpr std::uint32_t rounds = 8;

void oneRound(CCheck& check) {
    check.goLive();
    check.needLive();
    frameComes(check.host());
    check.goStopped();
}

void startsAgainAndAgain(CCheck& check) {
    for (std::uint32_t round = 0; round < rounds; ++round) {
        check.expectAnswer(check.goLive(), {.result = HOST_RESULT_SUCCESS}, "StartAcquisition");
        check.expect(frameComes(check.host()), "no frame in five waits");
        check.expectAnswer(check.host().stop(), {.result = HOST_RESULT_SUCCESS}, "StopAcquisition");
    }
}

ProcessResources resources(CCheck& check) {
    const auto found = check.system().resources();
    if (!found) {
        throw NotSupported{"this system does not count them"};
    }
    return *found;
}

// What grows with every round is left behind; one or two may be the system's own.
template <std::uint32_t ProcessResources::*kind>
void leavesNone(CCheck& check, void (*round)(CCheck&)) {
    resources(check);
    round(check);
    const std::uint32_t before = resources(check).*kind;
    for (std::uint32_t i = 0; i < rounds; ++i) {
        round(check);
    }
    const std::uint32_t after = resources(check).*kind;
    check.expect(after < before + rounds, std::to_string(after - before) + " more after " +
                                              std::to_string(rounds) + " rounds");
}

void readRound(CCheck& check) {
    for (const std::string& key : check.keys()) {
        check.host().get(key);
        check.host().type(key);
    }
    check.host().get("no such setting");
}

constexpr Claim cycleTable[] = {
    {"eight starts and stops, with a frame each", startsAgainAndAgain},
    {"starts and stops leave no handles",
     [](CCheck& check) { leavesNone<&ProcessResources::handles>(check, oneRound); }},
    {"starts and stops leave no threads",
     [](CCheck& check) { leavesNone<&ProcessResources::threads>(check, oneRound); }},
    {"reading settings leaves no handles",
     [](CCheck& check) { leavesNone<&ProcessResources::handles>(check, readRound); }},
};

}  // namespace

ClaimGroup cycleClaims() {
    return {"Starts and stops", cycleTable, [](CCheck& check) { check.runFree(); }, leaveStopped};
}

}  // namespace camhost
