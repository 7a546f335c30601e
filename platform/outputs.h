// SPDX-License-Identifier: MIT
// Outputs of a host that may be missing.
#pragma once

// A null place is not written.
template <class Value>
void writeIfGiven(Value* place, Value value) noexcept {
    if (place != nullptr) {
        *place = value;
    }
}
