// SPDX-License-Identifier: MIT
// The iterator of std::array and std::string_view in this build: a class, as in
// Microsoft's library, where libc++ has a pointer. What takes one for a pointer does
// not compile here either.
#pragma once

#include <compare>
#include <cstddef>
#include <iterator>
#include <type_traits>

namespace msvc_abi {

template <class T>
class CIterator {
public:
    using iterator_concept = std::contiguous_iterator_tag;
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::remove_cv_t<T>;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;

    constexpr CIterator() noexcept = default;
    constexpr explicit CIterator(T* place) noexcept : m_place(place) {}
    template <class Other, class = std::enable_if_t<std::is_same_v<const Other, T>>>
    constexpr CIterator(const CIterator<Other>& other) noexcept : m_place(other.operator->()) {}

    constexpr T& operator*() const noexcept { return *m_place; }
    constexpr T* operator->() const noexcept { return m_place; }
    constexpr T& operator[](std::ptrdiff_t n) const noexcept { return m_place[n]; }

    constexpr CIterator& operator+=(std::ptrdiff_t n) noexcept {
        m_place += n;
        return *this;
    }
    constexpr CIterator& operator-=(std::ptrdiff_t n) noexcept { return *this += -n; }
    constexpr CIterator& operator++() noexcept { return *this += 1; }
    constexpr CIterator& operator--() noexcept { return *this -= 1; }
    constexpr CIterator operator++(int) noexcept { return CIterator((*this += 1).m_place - 1); }
    constexpr CIterator operator--(int) noexcept { return CIterator((*this -= 1).m_place + 1); }

    friend constexpr CIterator operator+(CIterator i, std::ptrdiff_t n) noexcept { return i += n; }
    friend constexpr CIterator operator+(std::ptrdiff_t n, CIterator i) noexcept { return i += n; }
    friend constexpr CIterator operator-(CIterator i, std::ptrdiff_t n) noexcept { return i -= n; }
    friend constexpr std::ptrdiff_t operator-(CIterator left, CIterator right) noexcept {
        return left.m_place - right.m_place;
    }
    constexpr bool operator==(const CIterator&) const noexcept = default;
    constexpr auto operator<=>(const CIterator&) const noexcept = default;

private:
    T* m_place = nullptr;
};

}  // namespace msvc_abi
