// SPDX-License-Identifier: MIT
// List access whose failure a host recognises by its text.
#pragma once

#include <cstdint>
#include <stdexcept>

// The item at `index` of any list that knows its size. Throws std::out_of_range with a
// fixed text, on which hosts rely, when there is none; a negative index is out of range.
template <class List>
const auto& checkedAt(const List& items, std::int64_t index) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= items.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    return items[static_cast<decltype(items.size())>(index)];
}
