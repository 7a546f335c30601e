// SPDX-License-Identifier: MIT
#include "adapter/library_file.h"

#include <string>
#include <utility>

namespace {

constexpr const wchar_t* filePattern = L"ORV_CAPLB11*.dll";
constexpr const wchar_t* fileName = L"ORV_CAPLB11_x64.dll";

bool isPresent(const std::wstring& pattern) {
    WIN32_FIND_DATAW found{};
    HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    ::FindClose(search);
    return true;
}

}  // namespace

HMODULE CLibraryFile::load(const wchar_t* folder) {
    if (m_module == nullptr && *folder != L'\0' && isPresent(std::wstring(folder) + filePattern)) {
        // The files that the library itself needs come from its own folder first.
        m_module = ::LoadLibraryExW((std::wstring(folder) + fileName).c_str(), nullptr,
                                    LOAD_WITH_ALTERED_SEARCH_PATH);
    }
    return m_module;
}

void CLibraryFile::unload() noexcept {
    ::FreeLibrary(std::exchange(m_module, nullptr));
}
