// SPDX-License-Identifier: MIT
#include "tests/failing_allocations/failing_new.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/visits/host_visit.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

namespace {

constinit std::atomic<bool> counting{false};
constinit std::atomic<std::uint64_t> seen{0};
constinit std::atomic<std::uint64_t> failing{0};

bool isTheAdapters() noexcept {
    return counting.load(std::memory_order_relaxed) && visits::isInsideHostCall() &&
           virtualCamerasIsInsideCall() == 0 && !win32::isInsideCall();
}

void* allocated(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void failIfAsked() {
    if (isTheAdapters() && seen.fetch_add(1) + 1 == failing.load()) {
        throw std::bad_alloc();
    }
}

}  // namespace

void failing_new::failAt(std::uint64_t nth) noexcept {
    seen.store(0);
    failing.store(nth);
    counting.store(true);
}

std::uint64_t failing_new::stop() noexcept {
    counting.store(false);
    return seen.load();
}

// The other forms of new and delete end here by the rules of the language.
void* operator new(std::size_t size) {
    failIfAsked();
    return allocated(std::malloc(size != 0 ? size : 1));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    failIfAsked();
    const auto step = static_cast<std::size_t>(alignment);
    return allocated(std::aligned_alloc(step, (size + step - 1) / step * step));
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}
