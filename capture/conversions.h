// SPDX-License-Identifier: MIT
// From the capture library's texts and lists to standard ones, at once where
// they are received.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "capture/capture_library.h"
#include "platform/text.h"
#include "platform/windows.h"

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

// A counted wide text as COM passes it. Null is the empty text.
class CComText {
public:
    CComText() noexcept = default;
    explicit CComText(const std::wstring& text)
        : m_text(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    CComText(const CComText&) = delete;
    CComText& operator=(const CComText&) = delete;
    ~CComText() { ::SysFreeString(m_text); }

    BSTR get() const noexcept { return m_text; }
    // For one call that fills it.
    BSTR* put() noexcept {
        ::SysFreeString(m_text);
        m_text = nullptr;
        return &m_text;
    }
    std::string narrow() const {
        return toNarrow(std::wstring_view(m_text, ::SysStringLen(m_text)));
    }

private:
    BSTR m_text = nullptr;
};
