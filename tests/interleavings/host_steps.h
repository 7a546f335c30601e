// SPDX-License-Identifier: MIT
// What several operations of the host have in common.
#pragma once

#include <string_view>

#include "tests/interleavings/model.h"

namespace interleavings {

// An atomic step on the word that both sees and publishes.
template <class Change>
Step wordStep(std::string_view text, const Change& change) {
    return {text, 1, [change](Moment& moment, std::uint8_t) {
                moment.state.publication.acquire(host, atWord);
                moment.state.publication.release(host, atWord);
                change(moment.state);
                return Next::step;
            }};
}

Step clearFlags(std::string_view text);
Step clearReady(std::string_view text);
Step endWait(std::string_view text, Variant variant);
// CListener::unlockBuffer, whose failing unlock ends the operation.
void addUnlockBuffer(Steps& steps, Variant variant);

// A load of the word.
void look(State& state, Variant variant);
// The host begins to use the held buffer.
void touch(Moment& moment);

Steps waitFrame(Variant variant);
Steps copyFrame(Variant variant);
Steps copyIntoNothing(Variant variant);

}  // namespace interleavings
