// SPDX-License-Identifier: MIT
#include "camhost/win32/windows_library_search.h"

#include "camhost/base/files.h"
#include "camhost/base/texts.h"
#include "camhost/win32/wide_text.h"

namespace camhost {

namespace {

constexpr const char* defaultAdapter = "velmora_adapter.dll";
constexpr DWORD longestPath = 32768;

// What a call writes that takes a buffer and its length, and returns the length written.
template <class Call>
std::string textOf(Call call) {
    std::wstring text(longestPath, L'\0');
    const DWORD length = call(text.data(), longestPath);
    text.resize(length < longestPath ? length : 0);
    return toUtf8(text);
}

std::string moduleFile(HMODULE module) {
    return textOf(
        [&](wchar_t* text, DWORD size) { return GetModuleFileNameW(module, text, size); });
}

std::string fullPath(const std::string& file) {
    const std::string path = textOf([&](wchar_t* text, DWORD size) {
        return GetFullPathNameW(toWide(file).c_str(), size, text, nullptr);
    });
    return path.empty() ? file : path;
}

std::string withSeparator(std::string folder) {
    if (!folder.empty() && folder.back() != '\\' && folder.back() != '/') {
        folder += '\\';
    }
    return folder;
}

}  // namespace

std::string loadError(DWORD error) {
    switch (error) {
        case ERROR_MOD_NOT_FOUND:
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return "it, or a library that it needs, is not there";
        case ERROR_BAD_EXE_FORMAT:
            return "it is no 64-bit library";
        default:
            return "error " + std::to_string(error);
    }
}

std::string CWindowsLibrarySearch::adapterPath(const std::string& wanted) const {
    return fullPath(wanted.empty() ? folderOf(moduleFile(nullptr)) + defaultAdapter : wanted);
}

FoundLibrary CWindowsLibrarySearch::find(const std::string& name,
                                         const std::vector<std::string>& functions) {
    // For good, as the adapter would have it loaded: one that is only mapped stays without
    // its start, and spoils the adapter's own load.
    const HMODULE module = LoadLibraryW(toWide(name).c_str());
    if (module == nullptr) {
        return {.reason = loadError(GetLastError())};
    }
    FoundLibrary found{.file = moduleFile(module)};
    for (const std::string& function : functions) {
        if (GetProcAddress(module, function.c_str()) == nullptr) {
            found.missing.push_back(function);
        }
    }
    FreeLibrary(module);
    return found;
}

std::string CWindowsLibrarySearch::loadedFile(const std::string& name) const {
    const HMODULE module = GetModuleHandleW(toWide(name).c_str());
    return module != nullptr ? moduleFile(module) : std::string();
}

std::vector<SearchFolder> CWindowsLibrarySearch::folders() const {
    std::vector<SearchFolder> folders;
    const auto add = [&](const std::string& path, const char* what, bool isSystem = false) {
        if (!path.empty()) {
            folders.push_back({withSeparator(path), what, isSystem});
        }
    };
    add(folderOf(moduleFile(nullptr)), "beside camhost");
    add(textOf([](wchar_t* text, DWORD size) { return GetSystemDirectoryW(text, size); }),
        "in the system's folder", true);
    add(textOf([](wchar_t* text, DWORD size) { return GetWindowsDirectoryW(text, size); }),
        "in the folder of Windows");
    add(textOf([](wchar_t* text, DWORD size) { return GetCurrentDirectoryW(size, text); }),
        "in the current folder");
    const std::string path = textOf(
        [](wchar_t* text, DWORD size) { return GetEnvironmentVariableW(L"PATH", text, size); });
    for (const std::string& folder : split(path, ';')) {
        add(folder, "on the PATH");
    }
    return folders;
}

}  // namespace camhost
