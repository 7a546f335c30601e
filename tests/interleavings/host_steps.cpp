// SPDX-License-Identifier: MIT
// The host thread: starting, stopping and closing, and what all operations share.
#include "tests/interleavings/host_steps.h"

namespace interleavings {

Step clearFlags(std::string_view text) {
    return wordStep(text, [](State& state) {
        state.word = afterClearBoth(state.word);
        state.hostWaits = 0;
        state.frameDue = 0;
    });
}

Step clearReady(std::string_view text) {
    return wordStep(text, [](State& state) {
        state.word = afterClearReady(state.word);
        state.frameDue = 0;
    });
}

Step endWait(std::string_view text, Variant variant) {
    return wordStep(text, [variant](State& state) {
        state.word = afterEndWait(state.word);
        state.word.ready = variant == Variant::endWaitClearsReady ? no : state.word.ready;
        state.hostWaits = 0;
        const bool isTold = state.operation == waitOperation && state.woken != 0;
        state.promised = isTold && state.frameDue != 0 && state.deliveryOwns == 0 ? 1 : 0;
    });
}

void look(State& state, Variant variant) {
    if (variant != Variant::looksSeeNothing) {
        state.publication.acquire(host, atWord);
    }
}

void touch(Moment& moment) {
    moment.expect(moment.state.deliveryOwns == 0, "two owners of the buffer");
    moment.state.hostTouches = 1;
}

void addUnlockBuffer(Steps& steps, Variant variant) {
    steps.push_back(
        {"unlockBuffer looks who owns the buffer", 1, [variant](Moment& moment, std::uint8_t) {
             State& state = moment.state;
             look(state, variant);
             const bool owns =
                 hostOwnsBuffer(state.word) || variant == Variant::unlocksDuringAHandOver;
             state.mayTouch = owns ? 1 : 0;
             if (owns) {
                 touch(moment);
             }
             return Next::step;
         }});
    steps.push_back({"unlockBuffer unlocks", 2, [](Moment& moment, std::uint8_t choice) {
                         State& state = moment.state;
                         if (state.mayTouch != 0) {
                             moment.access(host, holder);
                         }
                         const bool unlocks = state.mayTouch != 0 && state.held != noBuffer;
                         if (choice == 1) {
                             state.hostTouches = 0;
                             return unlocks ? Next::end : Next::impossible;
                         }
                         if (unlocks) {
                             std::uint8_t& locks = state.locksOf(state.held);
                             locks = locks != 0 ? static_cast<std::uint8_t>(locks - 1) : locks;
                             state.publication.release(host, atLibrary);
                         }
                         return Next::step;
                     }});
    steps.push_back(
        {"unlockBuffer notes that nothing is locked", 1, [](Moment& moment, std::uint8_t) {
             State& state = moment.state;
             if (state.mayTouch != 0 && state.held != noBuffer) {
                 moment.access(host, holder);
                 state.bufferLocked = 0;
             }
             state.hostTouches = 0;
             return Next::step;
         }});
}

namespace {

Step stopLive(std::string_view text) {
    return {text, 1, [](Moment& moment, std::uint8_t) {
                // Returns when no listener is called any more.
                if (moment.state.deliveryStep != idle) {
                    return Next::impossible;
                }
                moment.state.live = 0;
                moment.state.publication.join();
                return Next::step;
            }};
}

Steps startAcquisition(Variant variant) {
    Steps steps;
    if (variant != Variant::startKeepsTheFlags) {
        steps.push_back(clearFlags("StartAcquisition clears the flags"));
    }
    if (variant != Variant::startKeepsTheLock) {
        addUnlockBuffer(steps, variant);
    }
    steps.push_back(
        {"StartAcquisition starts live video", 2, [](Moment& moment, std::uint8_t choice) {
             State& state = moment.state;
             if (state.connected == 0 || state.live != 0) {
                 return choice == 0 ? Next::end : Next::impossible;
             }
             moment.expect(state.lockCount() == 0, "a start with a locked buffer");
             // The library may refuse.
             state.live = choice == 0 ? 1 : 0;
             return Next::end;
         }});
    return steps;
}

Next unlockRing(Moment& moment, std::uint8_t choice) {
    State& state = moment.state;
    bool thrown = false;
    for (std::uint8_t buffer = 0; buffer < ringSize; ++buffer) {
        std::uint8_t& locks = state.locks.at(buffer);
        if (choice == 1 && locks != 0) {
            thrown = true;
        } else if (locks != 0) {
            locks = static_cast<std::uint8_t>(locks - 1);
        }
    }
    return choice == 1 && !thrown ? Next::impossible : Next::step;
}

Step startsOrEndsStop() {
    return {"StopAcquisition asks whether the camera is live", 1, [](Moment& moment, std::uint8_t) {
                const State& state = moment.state;
                return state.connected != 0 && state.live != 0 ? Next::step : Next::end;
            }};
}

Steps stopAcquisition(Variant variant) {
    Steps steps = {startsOrEndsStop()};
    const Step ring = {"StopAcquisition unlocks the ring", 2, unlockRing};
    if (variant == Variant::stopUnlocksWhileLive) {
        steps.push_back(ring);
        addUnlockBuffer(steps, variant);
    }
    steps.push_back(stopLive("StopAcquisition stops live video"));
    steps.push_back(endWait("StopAcquisition ends the wait", variant));
    if (variant != Variant::stopKeepsTheEvent) {
        steps.push_back({"StopAcquisition resets the event", 1, [](Moment& moment, std::uint8_t) {
                             moment.state.signalled = 0;
                             return Next::step;
                         }});
    }
    if (variant != Variant::stopKeepsReady) {
        steps.push_back(clearReady("StopAcquisition clears the ready flag"));
    }
    if (variant != Variant::stopUnlocksWhileLive) {
        steps.push_back(ring);
        if (variant != Variant::stopKeepsTheHeldLock) {
            addUnlockBuffer(steps, variant);
        }
    }
    steps.push_back({"StopAcquisition returns", 1, [](Moment& moment, std::uint8_t) {
                         const State& state = moment.state;
                         moment.expect(state.lockCount() == 0, "a buffer is locked after a stop");
                         moment.expect(state.signalled == 0, "a signal is left after a stop");
                         moment.expect(state.word == Word{}, "a flag is left after a stop");
                         return Next::end;
                     }});
    return steps;
}

Steps closeChannel(Variant variant) {
    Steps steps = {{"CloseChannel stops live video", 1, [](Moment& moment, std::uint8_t) {
                        State& state = moment.state;
                        if (state.live != 0 && state.deliveryStep != idle) {
                            return Next::impossible;
                        }
                        if (state.live != 0) {
                            state.publication.join();
                        }
                        state.live = 0;
                        return Next::step;
                    }}};
    steps.push_back(
        {"CloseChannel releases the buffer", 1, [variant](Moment& moment, std::uint8_t) {
             State& state = moment.state;
             look(state, variant);
             moment.note(closeMetAHandOver, state.deliveryOwns != 0);
             if (hostOwnsBuffer(state.word) || variant == Variant::releasesDuringAHandOver) {
                 touch(moment);
                 moment.access(host, holder);
                 state.held = noBuffer;
                 state.hostTouches = 0;
             }
             return Next::step;
         }});
    steps.push_back({"CloseChannel destroys the grabber, then the listener", 1,
                     [variant](Moment& moment, std::uint8_t) {
                         State& state = moment.state;
                         if (state.deliveryStep != idle &&
                             variant != Variant::closesTheListenerFirst) {
                             return Next::impossible;
                         }
                         state.closed = 1;
                         state.connected = 0;
                         return Next::end;
                     }});
    return steps;
}

}  // namespace

std::vector<Operation> hostOperations(Variant variant) {
    return {{"WaitFrame", waitFrame(variant)},
            {"CopyFrame", copyFrame(variant)},
            {"CopyFrame into nothing", copyIntoNothing(variant)},
            {"StartAcquisition", startAcquisition(variant)},
            {"StopAcquisition", stopAcquisition(variant)},
            {"CloseChannel", closeChannel(variant)}};
}

}  // namespace interleavings
