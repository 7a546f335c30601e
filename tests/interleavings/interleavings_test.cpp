// SPDX-License-Identifier: MIT
// The hand-over of frames in every order of its steps, and with one thing wrong at a time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>

#include "tests/interleavings/explorer.h"

namespace {

using interleavings::Exploration;
using interleavings::explore;
using interleavings::Variant;
using interleavings::Word;
using ::testing::IsEmpty;

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

// Explored once for all that is asked of it.
const Exploration& soundOrders() {
    static const Exploration found = explore(Variant::sound);
    return found;
}

TEST(Interleavings, NoOrderOfStepsBreaksARule) {
    const Exploration& found = soundOrders();
    EXPECT_EQ(found.violation, "") << joined(found.trace);
    EXPECT_GT(found.states, 10'000U);
    RecordProperty("states", std::to_string(found.states));
    RecordProperty("transitions", std::to_string(found.transitions));
}

TEST(Interleavings, EveryStepIsTakenInSomeOrder) {
    EXPECT_THAT(soundOrders().unused, IsEmpty());
}

TEST(Interleavings, EverySituationThatTheStepsAreMadeForOccurs) {
    EXPECT_EQ(soundOrders().witnesses, interleavings::allWitnesses);
}

TEST(Interleavings, ATakeIsSoundAsTheTwoStepsThatItIs) {
    const Exploration found = explore(Variant::takesByLoadAndExchange);
    EXPECT_EQ(found.violation, "") << joined(found.trace);
    EXPECT_THAT(found.unused, IsEmpty());
    RecordProperty("states", std::to_string(found.states));
}

TEST(Interleavings, EveryWordIsReachedByTheHandOversOwnSteps) {
    for (std::uint8_t bits = 0; bits < 8; ++bits) {
        Word word;
        word.ready = static_cast<std::uint8_t>(bits & 1U);
        word.handingOver = static_cast<std::uint8_t>((bits >> 1U) & 1U);
        word.waiting = static_cast<std::uint8_t>((bits >> 2U) & 1U);
        const auto same = interleavings::stepOf(word, [](CHandOver&) { return true; });
        EXPECT_EQ(same.word, word) << int{bits};
    }
}

struct Wrong {
    const char* name;
    Variant variant;
    const char* violation;
};

void PrintTo(const Wrong& wrong, std::ostream* out) {
    *out << wrong.name;
}

class WrongHandOver : public ::testing::TestWithParam<Wrong> {};

TEST_P(WrongHandOver, IsFound) {
    const Exploration found = explore(GetParam().variant);
    EXPECT_EQ(found.violation, GetParam().violation) << joined(found.trace);
    RecordProperty("steps", std::to_string(found.trace.size()));
}

std::string nameOf(const ::testing::TestParamInfo<Wrong>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Word, WrongHandOver,
    ::testing::Values(
        Wrong{"TakesByLoadAndStore", Variant::takesByLoadAndStore,
              "a frame was taken that nobody waited for"},
        Wrong{"TakesWithoutTheThirdBit", Variant::takesWithoutTheThirdBit,
              "a ready frame that is not locked"},
        Wrong{"TakesWithoutEndingTheWait", Variant::takesWithoutEndingTheWait,
              "one wait took two frames"},
        Wrong{"TakesWithoutReady", Variant::takesWithoutReady,
              "a frame was lost that a wait had told of"},
        Wrong{"NeverEndsTheHandOver", Variant::neverEndsTheHandOver, "a hand-over that never ends"},
        Wrong{"AbandonKeepsReady", Variant::abandonKeepsReady, "a ready frame that is not locked"},
        Wrong{"AbandonKeepsTheBuffer", Variant::abandonKeepsTheBuffer,
              "a hand-over that never ends"},
        Wrong{"BeginWaitClearsReady", Variant::beginWaitClearsReady,
              "a frame was lost that a wait had told of"},
        Wrong{"EndWaitClearsReady", Variant::endWaitClearsReady,
              "a frame was lost that a wait had told of"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Delivery, WrongHandOver,
    ::testing::Values(
        Wrong{"EndsTheHandOverBeforeTheLock", Variant::endsTheHandOverBeforeTheLock,
              "a ready frame that is not locked"},
        Wrong{"SignalsBeforeTheEnd", Variant::signalsBeforeTheEnd,
              "signalled before the buffer was given back"},
        Wrong{"SignalsTwice", Variant::signalsTwice, "a frame was signalled twice"},
        Wrong{"SignalsNever", Variant::signalsNever, "a frame was never signalled"},
        Wrong{"SignalsAfterAFailure", Variant::signalsAfterAFailure, "a signal without a frame"},
        Wrong{"EndsInsteadOfAbandoning", Variant::endsInsteadOfAbandoning,
              "a ready frame that is not locked"},
        Wrong{"KeepsTheSupersededLock", Variant::keepsTheSupersededLock, "two locks are held"},
        Wrong{"LocksBeforeItUnlocks", Variant::locksBeforeItUnlocks, "two locks are held"},
        Wrong{"ForgetsThatItLocked", Variant::forgetsThatItLocked, "two locks are held"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Host, WrongHandOver,
    ::testing::Values(
        Wrong{"CopiesDuringAHandOver", Variant::copiesDuringAHandOver, "two owners of the buffer"},
        Wrong{"CopiesWithoutAReadyFrame", Variant::copiesWithoutAReadyFrame,
              "a frame was copied that was not locked"},
        Wrong{"UnlocksBeforeItCopies", Variant::unlocksBeforeItCopies,
              "a frame was copied that was not locked"},
        Wrong{"CopyKeepsReady", Variant::copyKeepsReady, "a ready frame that is not locked"},
        Wrong{"DropsAFrameThatIsBeingHandedOver", Variant::dropsAFrameThatIsBeingHandedOver,
              "a frame was lost that a wait had told of"},
        Wrong{"CopyKeepsTheLock", Variant::copyKeepsTheLock, "a copied frame stays locked"},
        Wrong{"UnlocksDuringAHandOver", Variant::unlocksDuringAHandOver,
              "two owners of the buffer"},
        Wrong{"ReleasesDuringAHandOver", Variant::releasesDuringAHandOver,
              "two owners of the buffer"},
        Wrong{"WaitGoesOnAfterItsEnd", Variant::waitGoesOnAfterItsEnd,
              "a frame was taken that nobody waited for"},
        Wrong{"WaitKeepsTheEvent", Variant::waitKeepsTheEvent, "one signal ended two waits"},
        Wrong{"WaitResetsTheEventAfterATimeOut", Variant::waitResetsTheEventAfterATimeOut,
              "a signal was thrown away"},
        Wrong{"StopKeepsReady", Variant::stopKeepsReady, "a ready frame that is not locked"},
        Wrong{"StopKeepsTheEvent", Variant::stopKeepsTheEvent, "a signal is left after a stop"},
        Wrong{"StopKeepsTheHeldLock", Variant::stopKeepsTheHeldLock,
              "a buffer is locked after a stop"},
        Wrong{"StopUnlocksWhileLive", Variant::stopUnlocksWhileLive,
              "a ready frame that is not locked"},
        Wrong{"StartKeepsTheFlags", Variant::startKeepsTheFlags,
              "a ready frame that is not locked"},
        Wrong{"StartKeepsTheLock", Variant::startKeepsTheLock, "a start with a locked buffer"},
        Wrong{"LossKeepsTheFlags", Variant::lossKeepsTheFlags,
              "a frame of before the loss was copied"},
        Wrong{"ClosesTheListenerFirst", Variant::closesTheListenerFirst,
              "a delivery met a destroyed listener"}),
    nameOf);

// What the threads write before a step is the other one's to see behind it.
INSTANTIATE_TEST_SUITE_P(
    MemoryOrder, WrongHandOver,
    ::testing::Values(Wrong{"BeginWaitPublishesNothing", Variant::beginWaitPublishesNothing,
                            "a data race"},
                      Wrong{"TakeSeesNothing", Variant::takeSeesNothing, "a data race"},
                      Wrong{"EndPublishesNothing", Variant::endPublishesNothing, "a data race"},
                      Wrong{"LooksSeeNothing", Variant::looksSeeNothing, "a data race"}),
    nameOf);

}  // namespace
