// SPDX-License-Identifier: MIT
// Counted wide texts as COM passes them. Null is the empty text.
#pragma once

#include <string>
#include <string_view>

#include "platform/text.h"
#include "platform/windows.h"

inline std::string narrowComText(BSTR text) {
    return toNarrow(std::wstring_view(text, ::SysStringLen(text)));
}

// The caller owns it.
inline BSTR newComText(std::wstring_view text) {
    return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

// Owns one.
class CComText {
public:
    CComText() noexcept = default;
    explicit CComText(std::wstring_view text) : m_text(newComText(text)) {}
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
    std::string narrow() const { return narrowComText(m_text); }

private:
    BSTR m_text = nullptr;
};
