// SPDX-License-Identifier: MIT
#include "virtual_cameras/control/environment.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/text.h"
#include "platform/windows.h"

namespace virtual_cameras {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::FILE* openForReading(const std::string& path) {
#if defined(_WIN32)
    return ::_wfopen(toWide(path).c_str(), L"rb");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

}  // namespace

#if defined(_WIN32)

// The C runtime's copy may be older than what the host has set since.
std::optional<std::string> environmentText(const char* name) {
    const std::wstring wideName = toWide(name);
    const DWORD needed = ::GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
    if (needed <= 1) {
        return std::nullopt;
    }
    std::wstring value(needed, L'\0');
    value.resize(::GetEnvironmentVariableW(wideName.c_str(), value.data(), needed));
    return toNarrow(value);
}

#else

std::optional<std::string> environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? std::optional<std::string>(value) : std::nullopt;
}

#endif

std::optional<std::string> fileContent(const std::string& path, std::size_t mostBytes) {
    const std::unique_ptr<std::FILE, CloseFile> file(openForReading(path));
    if (file == nullptr) {
        return std::nullopt;
    }
    std::string content(mostBytes, '\0');
    content.resize(std::fread(content.data(), 1, content.size(), file.get()));
    return content;
}

}  // namespace virtual_cameras
