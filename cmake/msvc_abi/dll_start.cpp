// SPDX-License-Identifier: MIT
// Replaces the entry of DLLs in Microsoft's start-up code.
#include <windows.h>

#include "cmake/msvc_abi/image_start.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

// Objects exist before DllMain hears of the start, and still when it hears of the end.
extern "C" BOOL WINAPI _DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH && !startImage()) {
        return FALSE;
    }
    const BOOL accepted = DllMain(module, reason, reserved);
    if (reason == DLL_PROCESS_DETACH || (reason == DLL_PROCESS_ATTACH && !accepted)) {
        endImage();
    }
    return accepted;
}
