// SPDX-License-Identifier: MIT
// How many blocks of memory the program holds, by its own new and delete.
#pragma once

#include <cstdint>

namespace soak {

// Always 0 with a sanitizer that brings a new and delete of its own.
std::int64_t blocksAlive() noexcept;

}  // namespace soak
