// SPDX-License-Identifier: MIT
// Replaces operator new and delete of Microsoft's library. No new-handlers.
#include <malloc.h>
#include <stdlib.h>

#include <new>

namespace std {
const nothrow_t nothrow{};
}  // namespace std

namespace {

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void* __cdecl operator new(size_t size) {
    return orThrow(malloc(size != 0 ? size : 1));
}
void* __cdecl operator new[](size_t size) {
    return operator new(size);
}
void* __cdecl operator new(size_t size, const std::nothrow_t&) noexcept {
    return malloc(size != 0 ? size : 1);
}
void* __cdecl operator new[](size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void __cdecl operator delete(void* memory) noexcept {
    free(memory);
}
void __cdecl operator delete(void* memory, size_t) noexcept {
    free(memory);
}
void __cdecl operator delete(void* memory, const std::nothrow_t&) noexcept {
    free(memory);
}
void __cdecl operator delete[](void* memory) noexcept {
    free(memory);
}
void __cdecl operator delete[](void* memory, size_t) noexcept {
    free(memory);
}
void __cdecl operator delete[](void* memory, const std::nothrow_t&) noexcept {
    free(memory);
}

void* __cdecl operator new(size_t size, std::align_val_t alignment) {
    return orThrow(_aligned_malloc(size != 0 ? size : 1, static_cast<size_t>(alignment)));
}
void __cdecl operator delete(void* memory, std::align_val_t) noexcept {
    _aligned_free(memory);
}
