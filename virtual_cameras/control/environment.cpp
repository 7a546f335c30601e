// SPDX-License-Identifier: MIT
#include "virtual_cameras/control/environment.h"

#include <cstdlib>

#include "platform/text.h"
#include "platform/windows.h"

namespace virtual_cameras {

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

}  // namespace virtual_cameras
