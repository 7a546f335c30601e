// SPDX-License-Identifier: MIT
// The export, the library's entry, and what is made at load, in its order.
#include <array>
#include <string>

#include "adapter/channel_registry.h"
#include "adapter/entry_points.h"
#include "adapter/module_folder.h"
#include "platform/log_trace.h"
#include "platform/windows.h"
#include "velmora/video_channel_record.h"

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): the process-wide
// state of the start-up.

// The adapter's folder with its last backslash; the adapter's own path has at
// most 260 characters.
std::array<wchar_t, 270> moduleFolder{};
constexpr DWORD longestModulePath = 260;

constexpr const wchar_t* libraryPattern = L"ORV_CAPLB11*.dll";
constexpr const wchar_t* libraryFile = L"ORV_CAPLB11_x64.dll";

// OLE needs the loading thread in a single-threaded apartment: one start of COM
// that the host may have made there is undone first.
struct LoadingThreadCom {
    LoadingThreadCom() noexcept {
        ::CoUninitialize();
        ::OleInitialize(nullptr);
    }
};

// Constructed in this order.
const LoadingThreadCom loadingThreadCom;
ChannelRegistry registry;

// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

bool isLibraryPresent() {
    const std::wstring pattern = std::wstring(moduleFolder.data()) + libraryPattern;
    WIN32_FIND_DATAW found{};
    HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    ::FindClose(search);
    return true;
}

// The library is loaded on its first use in any case. Loading it here turns a
// damaged file, or one of another name, into a report: on first use it would end
// the host.
bool loadLibrary() {
    return isLibraryPresent() && ::LoadLibraryW(libraryFile) != nullptr;
}

}  // namespace

ChannelRegistry& channelRegistry() noexcept {
    return registry;
}

std::int32_t GetVideoChannel(void* /*ignored*/, std::int32_t index, VideoChannelRecord* record) {
    ::SetDllDirectoryW(moduleFolder.data());
    LogTrace(traceFileName, "%s \n", "\n*** Starting new Session ***");
    if (!registry.isInitialised()) {
        if (!loadLibrary()) {
            ::MessageBoxW(nullptr, L"Runtime Libraries not found!", L"Velmora Adapter", MB_OK);
            return HOST_RESULT_FAILURE;
        }
        registry.enumerate();
    }
    if (index >= registry.size()) {
        return HOST_RESULT_FAILURE;
    }
    CVideoChannel& channel = registry.at(index);
    if (record == nullptr) {
        return HOST_RESULT_FAILURE;
    }
    fillRecord(*record, channel);
    return HOST_RESULT_SUCCESS;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        ::GetModuleFileNameW(module, moduleFolder.data(), longestModulePath);
        cutToFolder(moduleFolder);
    }
    return TRUE;
}
