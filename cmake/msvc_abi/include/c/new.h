// SPDX-License-Identifier: MIT
// Replaces the header of Microsoft's runtime: what libc++'s <new> takes from it.
#pragma once

#include <stddef.h>

#include <vcruntime_exception.h>

namespace std {

struct nothrow_t {
    explicit nothrow_t() = default;
};
extern const nothrow_t nothrow;

enum class align_val_t : size_t {};

}  // namespace std

[[nodiscard]] void* __cdecl operator new(size_t size);
[[nodiscard]] void* __cdecl operator new(size_t size, const std::nothrow_t&) noexcept;
[[nodiscard]] void* __cdecl operator new[](size_t size);
[[nodiscard]] void* __cdecl operator new[](size_t size, const std::nothrow_t&) noexcept;
void __cdecl operator delete(void* memory) noexcept;
void __cdecl operator delete(void* memory, size_t size) noexcept;
void __cdecl operator delete(void* memory, const std::nothrow_t&) noexcept;
void __cdecl operator delete[](void* memory) noexcept;
void __cdecl operator delete[](void* memory, size_t size) noexcept;
void __cdecl operator delete[](void* memory, const std::nothrow_t&) noexcept;

[[nodiscard]] inline void* __cdecl operator new(size_t, void* place) noexcept {
    return place;
}
[[nodiscard]] inline void* __cdecl operator new[](size_t, void* place) noexcept {
    return place;
}
inline void __cdecl operator delete(void*, void*) noexcept {}
inline void __cdecl operator delete[](void*, void*) noexcept {}
