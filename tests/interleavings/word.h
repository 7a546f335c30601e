// SPDX-License-Identifier: MIT
// The hand-over's word as a value, and the steps of the adapter's own CHandOver on it.
#pragma once

#include <cstdint>

#include "acquisition/hand_over.h"

namespace interleavings {

struct Word {
    std::uint8_t ready = 0;
    std::uint8_t handingOver = 0;
    std::uint8_t waiting = 0;

    bool operator==(const Word&) const = default;
};

// What the word is after a step of CHandOver; the step's answer, where it has one.
struct Stepped {
    Word word;
    bool answer = false;
};

// A hand-over cannot be copied, so each step brings a new one to the word first, by its
// own operations alone.
template <class Step>
Stepped stepOf(const Word& word, Step&& step) {
    CHandOver handOver;
    if (word.ready != 0 || word.handingOver != 0) {
        handOver.beginWait();
        handOver.takeIfWaiting();
        if (word.ready == 0) {
            handOver.clearReady();
        }
        if (word.handingOver == 0) {
            handOver.endHandOver();
        }
    }
    if (word.waiting != 0) {
        handOver.beginWait();
    }
    Stepped result;
    result.answer = step(handOver);
    result.word.ready = handOver.isReady() ? 1 : 0;
    result.word.handingOver = handOver.hostOwnsBuffer() ? 0 : 1;
    // Asked last, since the answer uses the wait up.
    result.word.waiting = handOver.takeIfWaiting() ? 1 : 0;
    return result;
}

inline Word afterBeginWait(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.beginWait(), true; }).word;
}
inline Word afterEndWait(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.endWait(), true; }).word;
}
inline Word afterClearReady(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.clearReady(), true; }).word;
}
inline Word afterClearBoth(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.clearBoth(), true; }).word;
}
inline Word afterEndHandOver(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.endHandOver(), true; }).word;
}
inline Word afterAbandonHandOver(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.abandonHandOver(), true; }).word;
}
// Nothing else can come between the load and the exchange of a take that succeeds, so it
// is one step here.
inline Stepped afterTake(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.takeIfWaiting(); });
}
inline bool isReady(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.isReady(); }).answer;
}
inline bool hostOwnsBuffer(const Word& word) {
    return stepOf(word, [](CHandOver& handOver) { return handOver.hostOwnsBuffer(); }).answer;
}

}  // namespace interleavings
