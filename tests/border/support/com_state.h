// SPDX-License-Identifier: MIT
// Which apartment the calling thread is in, and how often it entered.
#pragma once

#include <cstdint>
#include <iosfwd>

enum class Apartment { none, single, multi };

struct ComState {
    Apartment apartment = Apartment::none;
    std::int32_t count = 0;  // starts of COM that are not balanced yet

    bool operator==(const ComState&) const = default;
};

void PrintTo(const ComState& state, std::ostream* stream);

// Leaves the thread as it was.
ComState comState();

// Balances all that the thread has started.
void endCom();
