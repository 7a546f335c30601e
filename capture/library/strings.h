// SPDX-License-Identifier: MIT
// The capture library's own string types, as they cross its border.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "platform/windows.h"

namespace DShowLib {

// An owned, terminated text. The buffer comes from CoTaskMemAlloc, also for the
// empty text (then it is one terminator long), so either side may free it.
// A moved-from text reads as empty.
template <class Character>
class dstring {
public:
    dstring() : dstring(nullptr, 0) {}
    explicit dstring(const Character* text) : dstring(text, length(text)) {}
    dstring(const Character* text, std::size_t size) : m_text(allocate(size)), m_size(size) {
        if (size != 0) {
            std::memcpy(m_text, text, size * sizeof(Character));
        }
        m_text[size] = Character();
    }

    dstring(const dstring& other) : dstring(other.m_text, other.m_size) {}
    dstring(dstring&& other) noexcept
        : m_text(std::exchange(other.m_text, nullptr)), m_size(std::exchange(other.m_size, 0)) {}
    dstring& operator=(const dstring& other) {
        *this = dstring(other);
        return *this;
    }
    dstring& operator=(dstring&& other) noexcept {
        std::swap(m_text, other.m_text);
        std::swap(m_size, other.m_size);
        return *this;
    }
    ~dstring() { ::CoTaskMemFree(m_text); }

    const Character* c_str() const noexcept { return m_text != nullptr ? m_text : &s_empty; }
    std::size_t size() const noexcept { return m_size; }

private:
    static std::size_t length(const Character* text) noexcept {
        std::size_t size = 0;
        while (text != nullptr && text[size] != Character()) {
            ++size;
        }
        return size;
    }

    static Character* allocate(std::size_t size) {
        void* memory = ::CoTaskMemAlloc((size + 1) * sizeof(Character));
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<Character*>(memory);
    }

    static constexpr Character s_empty{};

    Character* m_text;
    std::size_t m_size;
};

using dstringa = dstring<char>;
using dstringw = dstring<wchar_t>;

}  // namespace DShowLib
