// SPDX-License-Identifier: MIT
// Counts what the program allocates with new, on every thread.
#pragma once

#include <cstdint>

namespace counted_new {

// False in builds with a sanitizer that brings its own new, and would go blind
// without it.
bool isPossible() noexcept;
// Counts from 0 again.
void start() noexcept;
// How many allocations there were since the start.
std::uint64_t stop() noexcept;

}  // namespace counted_new
