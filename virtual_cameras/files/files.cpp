// SPDX-License-Identifier: MIT
// Without the standard library's paths and streams: not every build has their compiled
// parts, and these few questions are all that is asked.
#include "virtual_cameras/files/files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <tuple>

#if defined(_WIN32)
#include "platform/text.h"
#include "platform/windows.h"
#else
#include <dirent.h>
#include <sys/stat.h>
#endif

namespace virtual_cameras {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::ignore = std::fclose(file); }
};

#if defined(_WIN32)
constexpr std::string_view separators = "\\/";

std::FILE* openForReading(const std::string& path) {
    return ::_wfopen(toWide(path).c_str(), L"rb");
}
#else
constexpr std::string_view separators = "/";

std::FILE* openForReading(const std::string& path) {
    return std::fopen(path.c_str(), "rb");
}
#endif

bool isAbsolute(const std::string& path) {
    const bool beginsAtTheRoot =
        !path.empty() && separators.find(path[0]) != std::string_view::npos;
#if defined(_WIN32)
    return beginsAtTheRoot || (path.size() > 1 && path[1] == ':');
#else
    return beginsAtTheRoot;
#endif
}

}  // namespace

std::optional<std::string> fileContent(const std::string& path, std::size_t mostBytes) {
    if (isFolder(path)) {
        return std::nullopt;
    }
    const std::unique_ptr<std::FILE, CloseFile> file(openForReading(path));
    if (file == nullptr) {
        return std::nullopt;
    }
    std::string content;
    std::array<char, 65536> part;
    while (content.size() < mostBytes) {
        const std::size_t wanted = std::min(part.size(), mostBytes - content.size());
        const std::size_t size = std::fread(part.data(), 1, wanted, file.get());
        content.append(part.data(), size);
        if (size != wanted) {
            break;
        }
    }
    return content;
}

#if defined(_WIN32)

bool isFolder(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(toWide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::vector<std::string> fileNamesIn(const std::string& folder) {
    std::vector<std::string> names;
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW(toWide(seenFrom(folder, "*")).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return names;
    }
    const std::unique_ptr<void, decltype(&::FindClose)> closed(search, &::FindClose);
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            names.push_back(toNarrow(found.cFileName));
        }
    } while (::FindNextFileW(search, &found) != FALSE);
    std::sort(names.begin(), names.end());
    return names;
}

#else

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> fileNamesIn(const std::string& folder) {
    std::vector<std::string> names;
    const auto close = [](DIR* search) { ::closedir(search); };
    const std::unique_ptr<DIR, decltype(close)> search(::opendir(folder.c_str()), close);
    if (search == nullptr) {
        return names;
    }
    while (const dirent* found = ::readdir(search.get())) {
        struct stat status {};
        const std::string path = seenFrom(folder, found->d_name);
        if (::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            names.emplace_back(found->d_name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

#endif

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of(separators) + 1);
}

std::string seenFrom(const std::string& folder, const std::string& name) {
    if (folder.empty() || isAbsolute(name)) {
        return name;
    }
    const bool endsInSeparator = separators.find(folder.back()) != std::string_view::npos;
    return endsInSeparator ? folder + name : folder + "/" + name;
}

}  // namespace virtual_cameras
