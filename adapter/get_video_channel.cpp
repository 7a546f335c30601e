// SPDX-License-Identifier: MIT
// The export, the library's entry, and what is made at load, in its order.
#include <array>

#include "adapter/channel_registry.h"
#include "adapter/delay_load.h"
#include "adapter/entry_points.h"
#include "adapter/library_file.h"
#include "adapter/module_folder.h"
#include "adapter/module_reference.h"
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

// OLE needs the loading thread in a single-threaded apartment: one start of COM
// that the host may have made there is undone first.
struct LoadingThreadCom {
    LoadingThreadCom() noexcept {
        ::CoUninitialize();
        ::OleInitialize(nullptr);
    }
};

HMODULE adapterModule = nullptr;

// Constructed in this order.
const LoadingThreadCom loadingThreadCom;
ChannelRegistry registry;
CLibraryFile libraryFile;

// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// Lists the cameras. False where the capture library is missing, or of no use.
bool openCameras() {
    HMODULE library = libraryFile.load(moduleFolder.data());
    if (library == nullptr) {
        return false;
    }
    bindDelayedCalls(adapterModule, library);
    if (!registry.enumerate()) {
        libraryFile.unload();
        return false;
    }
    return true;
}

}  // namespace

ChannelRegistry& channelRegistry() noexcept {
    return registry;
}

std::int32_t GetVideoChannel(void* /*ignored*/, std::int32_t index, VideoChannelRecord* record) {
    if (moduleFolder[0] != L'\0') {
        ::SetDllDirectoryW(moduleFolder.data());
    }
    LogTrace(traceFileName, "%s \n", "\n*** Starting new Session ***");
    if (!registry.isInitialised()) {
        // A message box of the listing pumps messages: the host may ask again meanwhile.
        if (registry.isEnumerating()) {
            return HOST_RESULT_FAILURE;
        }
        if (!openCameras()) {
            ::MessageBoxW(nullptr, L"Runtime Libraries not found!", L"Velmora Adapter", MB_OK);
            return HOST_RESULT_FAILURE;
        }
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

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        adapterModule = module;
        // A path that fills the whole buffer is cut, and would lead to another folder.
        if (::GetModuleFileNameW(module, moduleFolder.data(), longestModulePath) <
            longestModulePath) {
            cutToFolder(moduleFolder);
        } else {
            moduleFolder.fill(L'\0');
        }
    }
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        letLastCallLeave();
    }
    return TRUE;
}
