// SPDX-License-Identifier: MIT
// Two cameras of one adapter beside each other.
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

void contextsDiffer(CCheck& check) {
    check.expect(check.neighbour().record().context != check.host().record().context,
                 "they are the same");
}

void serialsDiffer(CCheck& check) {
    const std::string serial = check.host().record().serialText;
    check.expect(serial == "n/a" || serial != check.neighbour().record().serialText,
                 "both are \"" + serial + "\"");
}

void stopBoth(CCheck& check) {
    if (check.all().size() > 1) {
        check.neighbour().stop();
    }
    check.goStopped();
}

// Starts both; throws where one of them can not.
void startBoth(CCheck& check) {
    stopBoth(check);
    if (const Answer answer = check.neighbour().start(); !answer.isDone()) {
        throw NotSupported{"the other camera's StartAcquisition " + told(answer)};
    }
    check.goLive();
    check.needLive();
}

void bothDeliver(CCheck& check) {
    startBoth(check);
    check.expect(frameComes(check.host()), "no frame in five waits");
}

void stoppingOneLeavesTheOther(CCheck& check) {
    startBoth(check);
    check.neighbour().stop();
    check.expectAnswer(check.host().start(), {.result = HOST_RESULT_FAILURE},
                       "a second StartAcquisition");
    check.expect(frameComes(check.host()), "no frame in five waits");
}

void settingsAreTheirOwn(CCheck& check) {
    check.neighbour();
    check.goStopped();
    const auto before = check.neighbour().get(pixelFormatKey).text;
    if (!before) {
        throw NotSupported{"there is no pixelformat"};
    }
    check.host().set(pixelFormatKey, *before == "Mono8" ? "rgb24" : "mono8");
    const auto after = check.neighbour().get(pixelFormatKey).text;
    check.expect(after == before, "the other's pixelformat is " + after.value_or("not there"));
}

constexpr Claim cameraTable[] = {
    {"the contexts differ", contextsDiffer},
    {"the serial texts differ", serialsDiffer},
    {"both are live at once", bothDeliver},
    {"stopping one leaves the other live", stoppingOneLeavesTheOther},
    {"a setting of one is not the other's", settingsAreTheirOwn},
};

void leave(CCheck& check) {
    stopBoth(check);
    check.putSettingsBack();
}

}  // namespace

ClaimGroup cameraClaims() {
    return {"Two cameras", cameraTable, [](CCheck& check) { check.runFree(); }, leave};
}

}  // namespace camhost
