// SPDX-License-Identifier: MIT
// The adapter's own folder, beside which the capture library lives.
#pragma once

#include <cstddef>
#include <span>

// The full path of a module, in place, becomes the folder with its last
// backslash: from the end, every character that is not a backslash is cleared.
// The first character is never cleared.
void cutToFolder(std::span<wchar_t> path) noexcept;
