// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/library_state.h"

namespace virtual_cameras {

namespace {

std::atomic<bool> ready{false};

}  // namespace

bool libraryIsReady() noexcept {
    return ready.load(std::memory_order_acquire);
}

void setLibraryReady(bool isReady) noexcept {
    ready.store(isReady, std::memory_order_release);
}

AliveCounts& alive() noexcept {
    static AliveCounts counts;
    return counts;
}

std::atomic<std::uint32_t>& pagesShown() noexcept {
    static std::atomic<std::uint32_t> pages{0};
    return pages;
}

PageWork& pageWork(const CWorldLock& /*world*/) noexcept {
    static PageWork work;
    return work;
}

}  // namespace virtual_cameras
