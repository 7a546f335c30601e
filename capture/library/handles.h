// SPDX-License-Identifier: MIT
// The capture library's own handle and list types: smart_ptr (shared ownership),
// smart_com (COM references) and dvector (lists).
//
// Everything here is header-only and crosses the library's border by value, so
// memory is always given back by the module that made it: each block carries
// the function that destroys it. The layouts are part of that border.
#pragma once

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

#include "platform/windows.h"

namespace DShowLib {

// What all smart_ptrs to one object share. `destroy` frees the object and the
// block, and runs in the module that made them.
struct smart_ptr_block {
    std::atomic<std::int32_t> references;
    void (*destroy)(smart_ptr_block*);
};

// Shared ownership of one object. Copies may be made and dropped on any thread;
// one smart_ptr object belongs to one thread at a time.
template <class T>
class smart_ptr {
public:
    smart_ptr() noexcept = default;

    // Takes over `object`, which is deleted by the calling module's code when
    // the last handle goes. A null object makes an empty handle.
    explicit smart_ptr(T* object) : m_object(object) {
        if (object != nullptr) {
            m_block = new owning_block(object);
        }
    }

    smart_ptr(const smart_ptr& other) noexcept : m_object(other.m_object), m_block(other.m_block) {
        addReference();
    }

    smart_ptr(smart_ptr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)),
          m_block(std::exchange(other.m_block, nullptr)) {}

    // A handle to a base class keeps the derived object alive.
    template <class Derived>
    smart_ptr(const smart_ptr<Derived>& other) noexcept  // NOLINT(google-explicit-constructor)
        : m_object(other.m_object), m_block(other.m_block) {
        addReference();
    }

    // The new object is stored before the old one is released: releasing may
    // run code that looks at this handle again.
    smart_ptr& operator=(smart_ptr other) noexcept {
        std::swap(m_object, other.m_object);
        std::swap(m_block, other.m_block);
        return *this;
    }

    ~smart_ptr() {
        if (m_block != nullptr &&
            m_block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            m_block->destroy(m_block);
        }
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    template <class Other>
    friend class smart_ptr;

    struct owning_block : smart_ptr_block {
        explicit owning_block(T* owned) : smart_ptr_block{{1}, &destroyOwned}, object(owned) {}
        static void destroyOwned(smart_ptr_block* block) {
            auto* self = static_cast<owning_block*>(block);
            delete self->object;
            delete self;
        }
        T* object;
    };

    void addReference() const noexcept {
        if (m_block != nullptr) {
            m_block->references.fetch_add(1, std::memory_order_relaxed);
        }
    }

    T* m_object = nullptr;
    smart_ptr_block* m_block = nullptr;
};

// One counted COM reference. Nothing converts implicitly, and there is no
// address-of: `put` empties the holder and hands out the place to fill.
template <class T>
class smart_com {
public:
    smart_com() noexcept = default;

    // Takes over one reference that the caller owns.
    explicit smart_com(T* adopted) noexcept : m_pointer(adopted) {}

    smart_com(const smart_com& other) noexcept : m_pointer(other.m_pointer) {
        if (m_pointer != nullptr) {
            m_pointer->AddRef();
        }
    }

    smart_com(smart_com&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}

    smart_com& operator=(smart_com other) noexcept {
        std::swap(m_pointer, other.m_pointer);
        return *this;
    }

    ~smart_com() {
        if (m_pointer != nullptr) {
            m_pointer->Release();
        }
    }

    T* get() const noexcept { return m_pointer; }
    T* operator->() const noexcept { return m_pointer; }
    explicit operator bool() const noexcept { return m_pointer != nullptr; }

    T** put() noexcept {
        *this = smart_com();
        return &m_pointer;
    }

private:
    T* m_pointer = nullptr;
};

// A list as the library hands it out. Items need a copy constructor only.
template <class T>
class dvector {
public:
    dvector() noexcept = default;
    dvector(const dvector& other) : dvector() {
        for (const T& item : other) {
            push_back(item);
        }
    }
    dvector(dvector&& other) noexcept { swap(other); }
    dvector& operator=(const dvector& other) {
        if (this != &other) {
            dvector copy(other);
            swap(copy);
        }
        return *this;
    }
    dvector& operator=(dvector&& other) noexcept {
        swap(other);
        return *this;
    }
    ~dvector() {
        for (std::uint32_t i = 0; i < m_size; ++i) {
            m_items[i].~T();
        }
        ::CoTaskMemFree(m_items);
    }

    void push_back(const T& item) {
        if (m_size == m_capacity) {
            grow();
        }
        ::new (static_cast<void*>(m_items + m_size)) T(item);
        ++m_size;
    }

    std::uint32_t size() const noexcept { return m_size; }
    bool empty() const noexcept { return m_size == 0; }
    const T* begin() const noexcept { return m_items; }
    const T* end() const noexcept { return m_items + m_size; }
    const T& operator[](std::uint32_t index) const noexcept { return m_items[index]; }

private:
    void swap(dvector& other) noexcept {
        std::swap(m_items, other.m_items);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

    void grow() {
        const std::uint32_t capacity = m_capacity == 0 ? 4 : m_capacity * 2;
        auto* items = static_cast<T*>(::CoTaskMemAlloc(sizeof(T) * capacity));
        if (items == nullptr) {
            throw std::bad_alloc();
        }
        dvector larger;
        larger.m_items = items;
        larger.m_capacity = capacity;
        for (const T& item : *this) {
            larger.push_back(item);
        }
        swap(larger);
    }

    T* m_items = nullptr;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = 0;
};

}  // namespace DShowLib
