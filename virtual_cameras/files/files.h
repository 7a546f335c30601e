// SPDX-License-Identifier: MIT
// The files and folders that rigs and the environment name. Paths are in UTF-8; their
// separators are those of the system, where Windows takes both kinds.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace virtual_cameras {

// The first bytes of a file. Nothing when it can not be opened, as a folder can not.
std::optional<std::string> fileContent(const std::string& path, std::size_t mostBytes);

bool isFolder(const std::string& path);

// The names of the files of a folder, not of its folders, in the order of their bytes.
std::vector<std::string> fileNamesIn(const std::string& folder);

// The folder that a path lies in, with the separator at its end; empty when it names none.
std::string folderOf(const std::string& path);

// What `name` means as seen from a folder: itself when it is absolute or there is no folder.
std::string seenFrom(const std::string& folder, const std::string& name);

}  // namespace virtual_cameras
