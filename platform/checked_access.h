// SPDX-License-Identifier: MIT
// List access whose failure a host recognises by its text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

// The item at `index`. Throws std::out_of_range with a fixed text, on which
// hosts rely, when there is none; a negative index is out of range.
template <class Item>
const Item& checkedAt(const std::vector<Item>& items, std::int64_t index) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= items.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    return items[static_cast<std::size_t>(index)];
}
