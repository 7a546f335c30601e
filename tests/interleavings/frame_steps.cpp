// SPDX-License-Identifier: MIT
// The host thread: waiting for frames, with the return of a lost camera, and copying them.
#include "tests/interleavings/host_steps.h"

namespace interleavings {

namespace {

// The search for a lost camera; it ends the former delivery thread.
Next reopenDevice(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    if (state.connected != 0) {
        return choice == 0 ? Next::step : Next::impossible;
    }
    if (state.deliveryStep != idle) {
        return Next::impossible;
    }
    constexpr std::uint8_t notFound = 1;
    if (choice == notFound) {
        return Next::end;
    }
    state.publication.join();
    constexpr std::uint8_t withAnotherRing = 2;
    if (choice == withAnotherRing) {
        if (state.held != noBuffer) {
            const std::uint8_t locks = state.locksOf(state.held);
            state.locks = {};
            state.held = formerRing;
            state.locksOf(state.held) = locks;
        } else {
            state.locks = {};
        }
    }
    state.connected = 1;
    state.live = 1;
    return Next::step;
}

Next awaitEvent(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    constexpr std::uint8_t isSignalled = 0;
    constexpr std::uint8_t timesOut = 1;
    if ((choice == isSignalled && state.signalled == 0) ||
        (choice == timesOut && state.signalled != 0)) {
        return Next::impossible;
    }
    state.woken = choice == isSignalled ? 1 : 0;
    if (choice == isSignalled) {
        moment.expect(state.signalSpent == 0, "one signal ended two waits");
        state.signalSpent = 1;
        state.publication.acquire(host, atEvent);
        moment.note(wokenByAFormerSignal, state.served == 0);
    }
    return Next::step;
}

// A loss that WaitFrame finds, and the return of the camera.
void addCheckDevice(Steps& steps, Variant variant) {
    steps.push_back({"WaitFrame clears the flags where the camera is lost", 1,
                     [variant](Moment& moment, std::uint8_t) {
                         State& state = moment.state;
                         if (state.connected != 0) {
                             return Next::step;
                         }
                         moment.note(lossMetAHandOver, state.deliveryOwns != 0);
                         if (variant != Variant::lossKeepsTheFlags) {
                             state.publication.acquire(host, atWord);
                             state.publication.release(host, atWord);
                             state.word = afterClearBoth(state.word);
                             state.frameDue = 0;
                         }
                         state.heldIsOld = 1;
                         return Next::step;
                     }});
    steps.push_back({"WaitFrame brings a lost camera back", 3, reopenDevice});
}

void addWait(Steps& steps, Variant variant) {
    steps.push_back({"WaitFrame begins the wait", 1, [variant](Moment& moment, std::uint8_t) {
                         State& state = moment.state;
                         state.publication.acquire(host, atWord);
                         if (variant != Variant::beginWaitPublishesNothing) {
                             state.publication.release(host, atWord);
                         }
                         state.word = afterBeginWait(state.word);
                         if (variant == Variant::beginWaitClearsReady) {
                             state.word.ready = 0;
                         }
                         state.hostWaits = 1;
                         state.served = 0;
                         return Next::step;
                     }});
    steps.push_back({"WaitFrame waits for the event", 3, awaitEvent});
    if (variant == Variant::waitGoesOnAfterItsEnd) {
        steps.push_back({"WaitFrame goes on waiting", 1, [](Moment& moment, std::uint8_t) {
                             moment.state.hostWaits = 0;
                             return Next::step;
                         }});
    } else {
        steps.push_back(endWait("WaitFrame ends the wait", variant));
    }
    if (variant != Variant::waitKeepsTheEvent) {
        steps.push_back({"WaitFrame resets the event", 1, [variant](Moment& moment, std::uint8_t) {
                             State& state = moment.state;
                             const bool resets =
                                 state.woken != 0 ||
                                 variant == Variant::waitResetsTheEventAfterATimeOut;
                             moment.expect(!resets || state.woken != 0 || state.signalled == 0,
                                           "a signal was thrown away");
                             state.signalled = resets ? no : state.signalled;
                             return Next::step;
                         }});
    }
}

// A frame of which a wait has told must be there.
Next noFrame(Moment& moment) {
    moment.expect(moment.state.promised == 0, "a frame was lost that a wait had told of");
    return Next::end;
}

void addCopyLooks(Steps& steps, Variant variant) {
    steps.push_back(
        {"CopyFrame looks who owns the buffer", 1, [variant](Moment& moment, std::uint8_t) {
             look(moment.state, variant);
             if (variant == Variant::copiesDuringAHandOver || hostOwnsBuffer(moment.state.word)) {
                 return Next::step;
             }
             moment.witnesses |= copyCameTooEarly;
             return noFrame(moment);
         }});
    steps.push_back(
        {"CopyFrame looks for a ready frame", 1, [variant](Moment& moment, std::uint8_t) {
             State& state = moment.state;
             look(state, variant);
             const bool ready = isReady(state.word) || variant == Variant::copiesWithoutAReadyFrame;
             if (ready) {
                 touch(moment);
                 moment.access(host, holder);
             }
             if (!ready || state.held == noBuffer) {
                 state.hostTouches = 0;
                 state.word = afterClearReady(state.word);
                 return noFrame(moment);
             }
             return Next::step;
         }});
}

Step copyStep(std::string_view text) {
    return {text, 2, [](Moment& moment, std::uint8_t choice) {
                State& state = moment.state;
                if (choice == 1) {
                    // The library throws about its pixels.
                    state.hostTouches = 0;
                    return Next::end;
                }
                moment.expect(state.holdsLocked(), "a frame was copied that was not locked");
                moment.expect(state.heldIsOld == 0, "a frame of before the loss was copied");
                moment.access(host, static_cast<std::uint8_t>(firstPixels + state.held));
                moment.witnesses |= frameCopied;
                moment.note(lateFrameCopied, state.woken == 0);
                moment.note(copiedFromTheFormerRing, state.held == formerRing);
                return Next::step;
            }};
}

}  // namespace

Steps waitFrame(Variant variant) {
    Steps steps;
    addCheckDevice(steps, variant);
    addWait(steps, variant);
    return steps;
}

Steps copyFrame(Variant variant) {
    Steps steps;
    addCopyLooks(steps, variant);
    if (variant == Variant::unlocksBeforeItCopies) {
        addUnlockBuffer(steps, variant);
    }
    steps.push_back(copyStep("CopyFrame copies the first half"));
    steps.push_back(copyStep("CopyFrame copies the second half"));
    if (variant != Variant::unlocksBeforeItCopies && variant != Variant::copyKeepsTheLock) {
        addUnlockBuffer(steps, variant);
    }
    if (variant != Variant::copyKeepsReady) {
        steps.push_back(clearReady("CopyFrame clears the ready flag"));
    }
    steps.push_back({"CopyFrame returns", 1, [](Moment& moment, std::uint8_t) {
                         moment.state.hostTouches = 0;
                         moment.state.frameDue = 0;
                         moment.expect(moment.state.lockCount() == 0,
                                       "a copied frame stays locked");
                         return Next::end;
                     }});
    return steps;
}

Steps copyIntoNothing(Variant variant) {
    Steps steps;
    if (variant != Variant::dropsAFrameThatIsBeingHandedOver) {
        steps.push_back({"CopyFrame into nothing looks who owns the buffer", 1,
                         [variant](Moment& moment, std::uint8_t) {
                             look(moment.state, variant);
                             return hostOwnsBuffer(moment.state.word) ? Next::step : Next::end;
                         }});
    }
    // A frame on its way is the next wait's, and still due.
    steps.push_back(wordStep("CopyFrame into nothing clears the ready flag", [](State& state) {
        state.word = afterClearReady(state.word);
        state.frameDue = state.deliveryOwns != 0 ? state.frameDue : no;
    }));
    return steps;
}

}  // namespace interleavings
