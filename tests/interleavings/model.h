// SPDX-License-Identifier: MIT
// The steps of the host's operations and of a delivery, one by one, as they stand in the
// channel and its listener; and what may be wrong with them.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "tests/interleavings/state.h"

namespace interleavings {

// The state machine as it is, twice, and with one thing wrong at a time.
enum class Variant : std::uint8_t {
    sound,
    takesByLoadAndExchange,  // as two steps, as the processor has it: sound as well
    // The word.
    takesByLoadAndStore,
    takesWithoutTheThirdBit,
    takesWithoutEndingTheWait,
    takesWithoutReady,
    neverEndsTheHandOver,
    abandonKeepsReady,
    abandonKeepsTheBuffer,
    beginWaitClearsReady,
    endWaitClearsReady,
    // The delivery.
    endsTheHandOverBeforeTheLock,
    signalsBeforeTheEnd,
    signalsTwice,
    signalsNever,
    signalsAfterAFailure,
    endsInsteadOfAbandoning,
    keepsTheSupersededLock,
    locksBeforeItUnlocks,
    forgetsThatItLocked,
    // The host.
    copiesDuringAHandOver,
    copiesWithoutAReadyFrame,
    unlocksBeforeItCopies,
    copyKeepsReady,
    dropsAFrameThatIsBeingHandedOver,
    copyKeepsTheLock,
    unlocksDuringAHandOver,
    releasesDuringAHandOver,
    waitGoesOnAfterItsEnd,
    waitKeepsTheEvent,
    waitResetsTheEventAfterATimeOut,
    stopKeepsReady,
    stopKeepsTheEvent,
    stopKeepsTheHeldLock,
    stopUnlocksWhileLive,
    startKeepsTheFlags,
    startKeepsTheLock,
    lossKeepsTheFlags,
    closesTheListenerFirst,
    // The memory orders.
    beginWaitPublishesNothing,
    takeSeesNothing,
    endPublishesNothing,
    looksSeeNothing,
};

// One step under way.
struct Moment {
    State state;
    const char* violation = nullptr;
    // Situations worth proving that they occur.
    std::uint32_t witnesses = 0;

    void expect(bool holds, const char* otherwise) noexcept {
        violation = violation == nullptr && !holds ? otherwise : violation;
    }
    void note(std::uint32_t witness, bool occurs) noexcept { witnesses |= occurs ? witness : 0U; }
    void access(Thread thread, std::uint8_t place) noexcept {
        expect(state.publication.access(thread, place), "a data race");
    }
};

enum Witness : std::uint32_t {
    frameCopied = 1U,
    copyCameTooEarly = 2U,
    lateFrameCopied = 4U,
    frameSuperseded = 8U,
    handOverAbandoned = 16U,
    wokenByAFormerSignal = 32U,
    copiedFromTheFormerRing = 64U,
    lossMetAHandOver = 128U,
    closeMetAHandOver = 256U,
};
inline constexpr std::uint32_t allWitnesses = 511U;

enum class Next : std::uint8_t {
    step,
    end,         // of the operation, or of the delivery
    again,       // the same step once more
    impossible,  // this choice is none now
};

struct Step {
    std::string_view text;
    // How many ways the step can go.
    std::uint8_t choices;
    std::function<Next(Moment&, std::uint8_t choice)> run;
};
using Steps = std::vector<Step>;

struct Operation {
    std::string_view name;
    Steps steps;
};

// The places of some operations among those of the host.
inline constexpr std::uint8_t waitOperation = 0;
inline constexpr std::uint8_t copyOperation = 1;
inline constexpr std::uint8_t closeOperation = 5;

// What a host may begin at any time, in any order.
std::vector<Operation> hostOperations(Variant variant);
// One delivery of the live camera.
Steps deliverySteps(Variant variant);
// Between any two steps.
void expectInvariants(Moment& moment);

}  // namespace interleavings
