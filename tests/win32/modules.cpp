// SPDX-License-Identifier: MIT
// Modules, the library search directory, and the search for a file.
#include <algorithm>
#include <cwchar>
#include <map>
#include <mutex>
#include <utility>

#include "tests/win32/call_log.h"
#include "tests/win32/win32_log.h"

namespace win32 {
namespace {

struct ModuleState {
    std::mutex mutex;
    std::wstring modulePath;
    std::vector<std::wstring> files;
    std::wstring searchDirectory;
    std::map<std::string, FARPROC, std::less<>> procedures;

    ModuleState() { setDefaults(); }

    void setDefaults() {
        modulePath = L"C:\\adapter\\velmora_adapter.dll";
        files = {L"C:\\adapter\\ORV_CAPLB11_x64.dll"};
        searchDirectory.clear();
        procedures.clear();
    }
};

// Outlives every other static object, whichever asks last.
ModuleState& moduleState() {
    static ModuleState* const instance = new ModuleState;
    return *instance;
}

// Module handles are only compared, never looked into.
char programModule;
char loadedModule;

wchar_t lower(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? character - L'A' + L'a' : character;
}

// With `*` and `?`, and without regard to case, as file names match on Windows.
bool matches(std::wstring_view pattern, std::wstring_view text) {
    if (pattern.empty()) {
        return text.empty();
    }
    if (pattern.front() == L'*') {
        return matches(pattern.substr(1), text) ||
               (!text.empty() && matches(pattern, text.substr(1)));
    }
    return !text.empty() &&
           (pattern.front() == L'?' || lower(pattern.front()) == lower(text.front())) &&
           matches(pattern.substr(1), text.substr(1));
}

// The first present file that matches, or the empty text.
std::wstring firstMatch(std::wstring_view pattern) {
    const std::lock_guard guard(moduleState().mutex);
    const auto& files = moduleState().files;
    const auto found = std::find_if(files.begin(), files.end(),
                                    [pattern](const auto& file) { return matches(pattern, file); });
    return found == files.end() ? std::wstring() : *found;
}

// A name without a folder is looked for in the search directory.
std::wstring loadedPath(std::wstring_view name) {
    const std::lock_guard guard(moduleState().mutex);
    return name.find(L'\\') == std::wstring_view::npos
               ? moduleState().searchDirectory + std::wstring(name)
               : std::wstring(name);
}

// A pointer of no more than 16 bits is no name, but an ordinal.
std::string procedureName(const char* name) {
    const auto ordinal = reinterpret_cast<std::uintptr_t>(name);
    return ordinal >> 16U == 0 ? "#" + std::to_string(ordinal) : std::string(name);
}

}  // namespace

void setModulePath(std::wstring path) {
    const std::lock_guard guard(moduleState().mutex);
    moduleState().modulePath = std::move(path);
}

void setFiles(std::vector<std::wstring> paths) {
    const std::lock_guard guard(moduleState().mutex);
    moduleState().files = std::move(paths);
}

void setProcAddress(std::string_view name, FARPROC address) {
    const std::lock_guard guard(moduleState().mutex);
    moduleState().procedures[std::string(name)] = address;
}

void detail::resetModules() {
    const std::lock_guard guard(moduleState().mutex);
    moduleState().setDefaults();
}

}  // namespace win32

using win32::detail::injected;
using win32::detail::pointerText;
using win32::detail::record;
using win32::detail::utf8;

DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
    const win32::detail::CInside inside;
    record("GetModuleFileNameW", pointerText(module) + ", " + std::to_string(size));
    if (injected("GetModuleFileNameW") == 0 || size == 0) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    const std::lock_guard guard(win32::moduleState().mutex);
    const std::wstring& full = win32::moduleState().modulePath;
    const std::size_t copied = std::min<std::size_t>(full.size(), size - 1);
    std::wmemcpy(path, full.data(), copied);
    path[copied] = L'\0';
    if (copied < full.size()) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return size;
    }
    return static_cast<DWORD>(copied);
}

HMODULE GetModuleHandleW(LPCWSTR name) {
    const win32::detail::CInside inside;
    record("GetModuleHandleW", utf8(name));
    if (injected("GetModuleHandleW") == 0) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HMODULE>(name == nullptr ? &win32::programModule
                                                     : &win32::loadedModule);
}

HMODULE LoadLibraryW(LPCWSTR name) {
    const win32::detail::CInside inside;
    record("LoadLibraryW", utf8(name));
    if (injected("LoadLibraryW") == 0 || win32::firstMatch(win32::loadedPath(name)).empty()) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HMODULE>(&win32::loadedModule);
}

HMODULE LoadLibraryExW(LPCWSTR name, HANDLE file, DWORD flags) {
    const win32::detail::CInside inside;
    record("LoadLibraryExW", utf8(name) + ", " + pointerText(file) + ", " + std::to_string(flags));
    if (injected("LoadLibraryExW") == 0 || win32::firstMatch(win32::loadedPath(name)).empty()) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HMODULE>(&win32::loadedModule);
}

BOOL FreeLibrary(HMODULE module) {
    const win32::detail::CInside inside;
    record("FreeLibrary", pointerText(module));
    return module != nullptr ? TRUE : FALSE;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    const win32::detail::CInside inside;
    const std::string function = win32::procedureName(name);
    record("GetProcAddress", pointerText(module) + ", " + function);
    const std::lock_guard guard(win32::moduleState().mutex);
    const auto found = win32::moduleState().procedures.find(function);
    if (injected("GetProcAddress") == 0 || found == win32::moduleState().procedures.end()) {
        SetLastError(ERROR_PROC_NOT_FOUND);
        return nullptr;
    }
    return found->second;
}

BOOL SetDllDirectoryW(LPCWSTR path) {
    const win32::detail::CInside inside;
    record("SetDllDirectoryW", utf8(path));
    if (const auto result = injected("SetDllDirectoryW")) {
        return static_cast<BOOL>(*result);
    }
    const std::lock_guard guard(win32::moduleState().mutex);
    win32::moduleState().searchDirectory = path != nullptr ? path : L"";
    return TRUE;
}

HANDLE FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found) {
    const win32::detail::CInside inside;
    record("FindFirstFileW", utf8(pattern));
    const std::wstring path = win32::firstMatch(pattern);
    if (injected("FindFirstFileW") == 0 || path.empty()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    *found = {};
    const std::wstring name = path.substr(path.find_last_of(L'\\') + 1);
    std::wmemcpy(found->cFileName, name.data(), std::min<std::size_t>(name.size(), MAX_PATH - 1));
    win32::detail::searches.add();
    return new char;
}

BOOL FindClose(HANDLE search) {
    const win32::detail::CInside inside;
    record("FindClose", pointerText(search));
    if (search == nullptr || search == INVALID_HANDLE_VALUE) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    delete static_cast<char*>(search);
    win32::detail::searches.remove();
    return TRUE;
}
