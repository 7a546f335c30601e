// SPDX-License-Identifier: MIT
#include "tests/soak/blocks.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/support/sanitizers.h"

#ifdef HAS_NEW_OF_A_SANITIZER

std::int64_t soak::blocksAlive() noexcept {
    return 0;
}

#else

namespace {

std::atomic<std::int64_t> alive{0};

void* counted(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    alive.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

void release(void* memory) noexcept {
    if (memory != nullptr) {
        alive.fetch_sub(1, std::memory_order_relaxed);
        std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc)
    }
}

}  // namespace

std::int64_t soak::blocksAlive() noexcept {
    return alive.load(std::memory_order_relaxed);
}

// The other forms of new and delete end here by the rules of the language.
void* operator new(std::size_t size) {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): new and delete stand on these.
    return counted(std::malloc(size != 0 ? size : 1));
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto step = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}

#endif
