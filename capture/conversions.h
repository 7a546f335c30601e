// SPDX-License-Identifier: MIT
// From the capture library's texts and lists to standard ones, at once where
// they are received.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "capture/capture_library.h"
#include "platform/com_text.h"
#include "platform/text.h"

inline std::wstring toStandard(const DShowLib::dstringw& text) {
    return {text.c_str(), text.size()};
}

inline std::string toNarrow(const DShowLib::dstringw& text) {
    return toNarrow(std::wstring_view(text.c_str(), text.size()));
}

// A missing list and an empty one both come back empty; where the difference
// matters, ask the handle first.
template <class Item>
std::vector<Item> toStandard(const DShowLib::smart_ptr<DShowLib::dvector<Item>>& list) {
    return list ? std::vector<Item>(list->begin(), list->end()) : std::vector<Item>();
}
