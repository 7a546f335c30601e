// SPDX-License-Identifier: MIT
// Wide text of the system as UTF-8, for comparing and printing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/windows.h"

inline std::string utf8(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    std::string narrow(wide.size() * 3, '\0');
    const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, narrow.data(),
                                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(bytes));
    return narrow;
}
