// SPDX-License-Identifier: MIT
// Whether the library is initialised, and what its callers hold of it. Any thread.
#pragma once

#include <atomic>
#include <cstdint>

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

// Property pages shown since the reset.
std::atomic<std::uint32_t>& pagesShown() noexcept;

}  // namespace virtual_cameras
