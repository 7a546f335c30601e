// SPDX-License-Identifier: MIT
// The program's operator new, which can fail where the adapter allocates.
#pragma once

#include <cstdint>

namespace failing_new {

// Allocations count that the adapter makes with new on the host's thread, inside a call of
// the host. What the capture library and the system allocate meanwhile is their own.

// Counts from 0 again, and fails the nth from now; 0: none.
void failAt(std::uint64_t nth) noexcept;
// How many there were since then. Nothing fails any more.
std::uint64_t stop() noexcept;

}  // namespace failing_new
