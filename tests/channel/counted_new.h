// SPDX-License-Identifier: MIT
// Counts what the program allocates with new, on every thread.
#pragma once

#include <cstdint>

namespace counted_new {

// Counts from 0 again.
void start() noexcept;
// How many allocations there were since the start.
std::uint64_t stop() noexcept;

}  // namespace counted_new
