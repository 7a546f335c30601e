// SPDX-License-Identifier: MIT
// Whether the library is initialised, and what its callers hold of it. Any thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "virtual_cameras/calls/world_lock.h"

namespace virtual_cameras {

// Between InitLibrary and ExitLibrary.
bool libraryIsReady() noexcept;
void setLibraryReady(bool ready) noexcept;

// What is alive, by kind.
struct AliveCounts {
    std::atomic<std::uint32_t> grabbers{0};
    std::atomic<std::uint32_t> listeners{0};
    std::atomic<std::uint32_t> sinks{0};
    std::atomic<std::uint32_t> buffers{0};
    std::atomic<std::uint32_t> items{0};
    std::atomic<std::uint32_t> interfaces{0};
};
AliveCounts& alive() noexcept;

// Property pages shown since the reset, and what a host does in them: under the lock.
std::atomic<std::uint32_t>& pagesShown() noexcept;
struct PageWork {
    void (*work)(void* context) = nullptr;
    void* context = nullptr;
};
PageWork& pageWork(const CWorldLock& world) noexcept;

}  // namespace virtual_cameras
