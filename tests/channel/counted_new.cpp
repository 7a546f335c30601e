// SPDX-License-Identifier: MIT
#include "tests/channel/counted_new.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/support/sanitizers.h"

#ifdef HAS_NEW_OF_A_SANITIZER

bool counted_new::isPossible() noexcept {
    return false;
}
void counted_new::start() noexcept {}
std::uint64_t counted_new::stop() noexcept {
    return 0;
}

#else

namespace {

std::atomic<bool> counting{false};
std::atomic<std::uint64_t> allocations{0};

void* counted(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    if (counting.load(std::memory_order_relaxed)) {
        allocations.fetch_add(1, std::memory_order_relaxed);
    }
    return memory;
}

}  // namespace

bool counted_new::isPossible() noexcept {
    return true;
}

void counted_new::start() noexcept {
    allocations.store(0);
    counting.store(true);
}

std::uint64_t counted_new::stop() noexcept {
    counting.store(false);
    return allocations.load();
}

// The other forms of new and delete end here by the rules of the language.
void* operator new(std::size_t size) {
    return counted(std::malloc(size != 0 ? size : 1));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto step = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}

#endif
