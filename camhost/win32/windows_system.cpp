// SPDX-License-Identifier: MIT
#include "camhost/win32/windows_system.h"

#include <bcrypt.h>
#include <io.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "camhost/base/failure.h"
#include "camhost/base/files.h"
#include "camhost/win32/wide_text.h"

namespace camhost {

namespace {

constexpr const wchar_t* captureFile = L"ORV_CAPLB11_x64.dll";
constexpr const wchar_t* capturePattern = L"ORV_CAPLB11*.dll";

std::atomic<bool> ctrlC{false};
HANDLE ctrlCEvent = nullptr;

BOOL WINAPI onConsoleSignal(DWORD signal) {
    if (signal != CTRL_C_EVENT && signal != CTRL_BREAK_EVENT && signal != CTRL_CLOSE_EVENT) {
        return FALSE;
    }
    // The second one ends the program at once.
    if (ctrlC.exchange(true)) {
        return FALSE;
    }
    SetEvent(ctrlCEvent);
    // With its console gone the program ends as soon as this returns, so it does not: main
    // has the seconds that the system grants to stop the video.
    if (signal == CTRL_CLOSE_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}

double secondsOf(const FILETIME& time) {
    constexpr double perSecond = 1e7;
    const std::uint64_t ticks =
        (static_cast<std::uint64_t>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
    return static_cast<double>(ticks) / perSecond;
}

}  // namespace

CWindowsSystem::CWindowsSystem() {
    // A library that lacks a function is a failed load, and no box of the system's that waits
    // for somebody.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    ctrlCEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(onConsoleSignal, TRUE);
}

CWindowsSystem::~CWindowsSystem() {
    SetConsoleCtrlHandler(onConsoleSignal, FALSE);
    CloseHandle(ctrlCEvent);
}

// Both the process environment and the C runtime's own copy of it.
void CWindowsSystem::setVariable(const std::string& name, const std::string& value) {
    SetEnvironmentVariableW(toWide(name).c_str(), toWide(value).c_str());
    _wputenv_s(toWide(name).c_str(), toWide(value).c_str());
}

GetVideoChannelEntry CWindowsSystem::loadAdapter(const std::string& file) {
    m_adapterFile = m_librarySearch.adapterPath(file);
    const HMODULE module = LoadLibraryW(toWide(m_adapterFile).c_str());
    if (module == nullptr) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "adapter_not_loaded",
                      .message = "the adapter " + m_adapterFile +
                                 " can not be loaded: " + loadError(GetLastError()),
                      .hint = file.empty() ? "name it with --adapter" : ""};
    }
    const FARPROC entry = GetProcAddress(module, "GetVideoChannel");
    if (entry == nullptr) {
        throw Failure{
            .exit = ExitCode::NotFound,
            .code = "no_adapter",
            .message = m_adapterFile + " is no camera adapter: it does not export GetVideoChannel"};
    }
    return reinterpret_cast<GetVideoChannelEntry>(reinterpret_cast<void (*)()>(entry));
}

bool CWindowsSystem::captureLibraryPresent() const {
    WIN32_FIND_DATAW found;
    const std::wstring pattern = toWide(folderOf(m_adapterFile)) + capturePattern;
    const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

std::string CWindowsSystem::rigMistake() const {
    using MistakeEntry = std::int32_t (*)(char* message, std::uint32_t size);
    const HMODULE library = GetModuleHandleW(captureFile);
    const FARPROC entry =
        library != nullptr ? GetProcAddress(library, "virtualCamerasRigMistake") : nullptr;
    if (entry == nullptr) {
        return {};
    }
    char message[1024] = "";
    reinterpret_cast<MistakeEntry>(reinterpret_cast<void (*)()>(entry))(message, sizeof message);
    return message;
}

void CWindowsSystem::guardDialogs(bool on) {
    if (on && !m_guard) {
        m_guard = std::make_unique<CDialogGuard>();
    } else if (!on && m_guard) {
        const std::vector<Dialog> closed = m_guard->closed();
        m_dialogs.insert(m_dialogs.end(), closed.begin(), closed.end());
        m_guard.reset();
    }
}

std::vector<Dialog> CWindowsSystem::dialogsClosed() {
    return m_dialogs;
}

std::optional<ProcessResources> CWindowsSystem::resources() {
    DWORD handles = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &handles) == FALSE) {
        return std::nullopt;
    }
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    std::uint32_t threads = 0;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Thread32First(snapshot, &entry); more != FALSE;
         more = Thread32Next(snapshot, &entry)) {
        threads += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1U : 0U;
    }
    CloseHandle(snapshot);
    return ProcessResources{handles, threads};
}

std::optional<double> CWindowsSystem::processorSeconds() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    if (GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user) == FALSE) {
        return std::nullopt;
    }
    return secondsOf(kernel) + secondsOf(user);
}

double CWindowsSystem::seconds() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void CWindowsSystem::sleep(std::uint32_t milliseconds) {
    WaitForSingleObject(ctrlCEvent, milliseconds);
}

bool CWindowsSystem::interrupted() {
    return ctrlC.load();
}

bool CWindowsSystem::messagesOnTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

std::string CWindowsSystem::utcDate() {
    SYSTEMTIME time;
    GetSystemTime(&time);
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02uZ", time.wYear, time.wMonth,
                  time.wDay, time.wHour, time.wMinute, time.wSecond);
    return text;
}

std::vector<std::uint8_t> CWindowsSystem::randomBytes(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(count),
                        BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
        throw Failure{.code = "internal", .message = "the system gives no random numbers"};
    }
    return bytes;
}

bool CWindowsSystem::openBrowser(const std::string& address) {
    constexpr INT_PTR lowestSuccess = 33;
    const HINSTANCE result =
        ShellExecuteW(nullptr, L"open", toWide(address).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) >= lowestSuccess;
}

}  // namespace camhost
