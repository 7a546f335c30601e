// SPDX-License-Identifier: MIT
// The delivery thread: the library's part of a delivery, then CListener::frameReady.
#include "tests/interleavings/model.h"

namespace interleavings {

namespace {

Next pickBuffer(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    if (state.locks.at(choice) != 0) {
        return Next::impossible;
    }
    state.publication.acquire(delivery, atLibrary);
    state.filled = static_cast<std::int8_t>(choice);
    state.failed = 0;
    state.signals = 0;
    moment.access(delivery, static_cast<std::uint8_t>(firstPixels + choice));
    return Next::step;
}

Next fillBuffer(Moment& moment, std::uint8_t /*choice*/) {
    moment.access(delivery, static_cast<std::uint8_t>(firstPixels + moment.state.filled));
    return Next::step;
}

void noteTaken(Moment& moment, Variant variant) {
    State& state = moment.state;
    if (variant != Variant::takeSeesNothing) {
        state.publication.acquire(delivery, atWord);
    }
    state.publication.release(delivery, atWord);
    moment.expect(state.hostWaits != 0, "a frame was taken that nobody waited for");
    moment.expect(state.served == 0, "one wait took two frames");
    moment.expect(state.hostTouches == 0, "two owners of the buffer");
    state.served = 1;
    state.deliveryOwns = 1;
    state.frameDue = 1;
    state.heldIsOld = 0;
}

Next take(Moment& moment, Variant variant) {
    const Stepped taken = afterTake(moment.state.word);
    moment.state.word = taken.word;
    if (!taken.answer) {
        return Next::end;
    }
    Word& word = moment.state.word;
    word.handingOver = variant == Variant::takesWithoutTheThirdBit ? no : word.handingOver;
    word.waiting = variant == Variant::takesWithoutEndingTheWait ? yes : word.waiting;
    word.ready = variant == Variant::takesWithoutReady ? no : word.ready;
    noteTaken(moment, variant);
    return Next::step;
}

Next loadWord(Moment& moment, std::uint8_t /*choice*/) {
    moment.state.publication.acquire(delivery, atWord);
    moment.state.loaded = moment.state.word;
    return moment.state.loaded.waiting != 0 ? Next::step : Next::end;
}

// The exchange of a weak compare may also fail for no reason.
Next exchangeWord(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    if (choice == 1 || state.word != state.loaded) {
        state.publication.acquire(delivery, atWord);
        state.loaded = state.word;
        return state.loaded.waiting != 0 ? Next::again : Next::end;
    }
    state.word = afterTake(state.loaded).word;
    noteTaken(moment, Variant::sound);
    return Next::step;
}

Next storeWord(Moment& moment, std::uint8_t /*choice*/) {
    moment.state.word = afterTake(moment.state.loaded).word;
    noteTaken(moment, Variant::sound);
    return Next::step;
}

Next unlockSuperseded(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    const bool unlocks = state.failed == 0 && state.bufferLocked != 0 && state.held != noBuffer;
    if (choice == 1 && !unlocks) {
        return Next::impossible;
    }
    if (state.failed == 0) {
        moment.access(delivery, holder);
    }
    if (!unlocks) {
        return Next::step;
    }
    if (choice == 1) {
        state.failed = 1;
        return Next::step;
    }
    moment.witnesses |= frameSuperseded;
    std::uint8_t& locks = state.locksOf(state.held);
    locks = locks != 0 ? static_cast<std::uint8_t>(locks - 1) : locks;
    state.publication.release(delivery, atLibrary);
    return Next::step;
}

Next clearLocked(Moment& moment, std::uint8_t /*choice*/) {
    if (moment.state.failed == 0) {
        moment.access(delivery, holder);
        moment.state.bufferLocked = 0;
    }
    return Next::step;
}

Next holdBuffer(Moment& moment, std::uint8_t /*choice*/) {
    if (moment.state.failed == 0) {
        moment.access(delivery, holder);
        moment.state.held = moment.state.filled;
    }
    return Next::step;
}

Next lockBuffer(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    if (state.failed != 0) {
        return choice == 0 ? Next::step : Next::impossible;
    }
    if (choice == 1) {
        state.failed = 1;
        return Next::step;
    }
    ++state.locksOf(state.filled);
    return Next::step;
}

Next noteLocked(Moment& moment, std::uint8_t /*choice*/) {
    if (moment.state.failed == 0) {
        moment.access(delivery, holder);
        moment.state.bufferLocked = 1;
    }
    return Next::step;
}

Next endHandOver(Moment& moment, Variant variant) {
    State& state = moment.state;
    const Word before = state.word;
    const bool abandons = state.failed != 0 && variant != Variant::endsInsteadOfAbandoning;
    state.word = abandons ? afterAbandonHandOver(before) : afterEndHandOver(before);
    if (abandons) {
        moment.witnesses |= handOverAbandoned;
        state.word.ready = variant == Variant::abandonKeepsReady ? before.ready : state.word.ready;
        state.word.handingOver = variant == Variant::abandonKeepsTheBuffer ? 1 : 0;
    }
    if (variant == Variant::neverEndsTheHandOver) {
        state.word = before;
    }
    state.frameDue = state.failed != 0 ? no : state.frameDue;
    state.deliveryOwns = 0;
    state.publication.acquire(delivery, atWord);
    if (variant != Variant::endPublishesNothing) {
        state.publication.release(delivery, atWord);
    }
    moment.expect(hostOwnsBuffer(state.word), "a hand-over that never ends");
    return Next::step;
}

Next signal(Moment& moment, Variant variant) {
    State& state = moment.state;
    if (state.failed != 0 && variant != Variant::signalsAfterAFailure) {
        return Next::step;
    }
    moment.expect(state.failed == 0, "a signal without a frame");
    moment.expect(state.deliveryOwns == 0, "signalled before the buffer was given back");
    moment.expect(state.signals == 0, "a frame was signalled twice");
    ++state.signals;
    state.signalled = 1;
    state.signalSpent = 0;
    state.publication.release(delivery, atEvent);
    return Next::step;
}

Next leaveFrameReady(Moment& moment, std::uint8_t /*choice*/) {
    const State& state = moment.state;
    moment.expect(state.signals != 0 || state.failed != 0, "a frame was never signalled");
    return Next::end;
}

void addTake(Steps& steps, Variant variant) {
    if (variant == Variant::takesByLoadAndExchange) {
        steps.push_back({"frameReady loads the word", 1, loadWord});
        steps.push_back({"frameReady exchanges the word", 2, exchangeWord});
    } else if (variant == Variant::takesByLoadAndStore) {
        steps.push_back({"frameReady loads the word", 1, loadWord});
        steps.push_back({"frameReady stores the word", 1, storeWord});
    } else {
        steps.push_back({"frameReady takes the wait", 1, [variant](Moment& moment, std::uint8_t) {
                             return take(moment, variant);
                         }});
    }
}

void addHold(Steps& steps, Variant variant) {
    const Step lock = {"frameReady locks the new buffer", 2, lockBuffer};
    if (variant == Variant::locksBeforeItUnlocks) {
        steps.push_back(lock);
    }
    if (variant != Variant::keepsTheSupersededLock) {
        steps.push_back({"frameReady unlocks the superseded buffer", 2, unlockSuperseded});
    }
    steps.push_back({"frameReady notes that nothing is locked", 1, clearLocked});
    steps.push_back({"frameReady holds the new buffer", 1, holdBuffer});
    if (variant != Variant::locksBeforeItUnlocks) {
        steps.push_back(lock);
    }
    if (variant != Variant::forgetsThatItLocked) {
        steps.push_back({"frameReady notes that it is locked", 1, noteLocked});
    }
}

}  // namespace

Steps deliverySteps(Variant variant) {
    const Step end = {"frameReady ends the hand-over", 1, [variant](Moment& moment, std::uint8_t) {
                          return endHandOver(moment, variant);
                      }};
    const Step wake = {"frameReady signals the event", 1,
                       [variant](Moment& moment, std::uint8_t) { return signal(moment, variant); }};
    Steps steps = {{"the library picks a buffer", ringSize, pickBuffer},
                   {"the library has filled it", 1, fillBuffer}};
    addTake(steps, variant);
    if (variant == Variant::endsTheHandOverBeforeTheLock) {
        steps.push_back(end);
    }
    addHold(steps, variant);
    if (variant == Variant::signalsBeforeTheEnd) {
        steps.push_back(wake);
    }
    if (variant != Variant::endsTheHandOverBeforeTheLock) {
        steps.push_back(end);
    }
    if (variant != Variant::signalsBeforeTheEnd && variant != Variant::signalsNever) {
        steps.push_back(wake);
    }
    if (variant == Variant::signalsTwice) {
        steps.push_back(wake);
    }
    steps.push_back({"frameReady returns", 1, leaveFrameReady});
    return steps;
}

void expectInvariants(Moment& moment) {
    const State& state = moment.state;
    moment.expect(state.lockCount() <= 1, "two locks are held");
    moment.expect(state.hostTouches == 0 || state.deliveryOwns == 0, "two owners of the buffer");
    moment.expect(state.closed == 0 || state.deliveryStep == idle,
                  "a delivery met a destroyed listener");
    // A copy unlocks its frame just before it clears the flag; who closes asks for no flag.
    const bool exempt = state.operation == copyOperation || state.operation == closeOperation;
    moment.expect(
        exempt || state.word.ready == 0 || state.word.handingOver != 0 || state.holdsLocked(),
        "a ready frame that is not locked");
}

}  // namespace interleavings
