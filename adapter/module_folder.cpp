// SPDX-License-Identifier: MIT
#include "adapter/module_folder.h"

#include <algorithm>

void cutToFolder(std::span<wchar_t> path) noexcept {
    const auto terminator = std::find(path.begin(), path.end(), L'\0');
    auto length = static_cast<std::size_t>(terminator - path.begin());
    while (length > 1 && path[length - 1] != L'\\') {
        --length;
        path[length] = L'\0';
    }
}
