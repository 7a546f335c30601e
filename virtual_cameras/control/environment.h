// SPDX-License-Identifier: MIT
// What the process was told by its environment, and the files that it names there.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace virtual_cameras {

// In UTF-8. Nothing when the variable is not set or empty.
std::optional<std::string> environmentText(const char* name);

// The first bytes of a file, whose path is in UTF-8. Nothing when it can not be opened.
std::optional<std::string> fileContent(const std::string& path, std::size_t mostBytes);

}  // namespace virtual_cameras
