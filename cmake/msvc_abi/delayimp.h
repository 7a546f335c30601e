// SPDX-License-Identifier: MIT
// Replaces <delayimp.h>: the delayed imports of an image as the linker lays them out.
#pragma once

#include <windows.h>

// All addresses count from the image's start.
struct ImgDelayDescr {
    DWORD grAttrs;
    DWORD rvaDLLName;
    DWORD rvaHmod;  // the module once it is loaded
    DWORD rvaIAT;   // per function: where it is, or the stub that asks for it
    DWORD rvaINT;   // per function: its name, or its number
    DWORD rvaBoundIAT;
    DWORD rvaUnloadIAT;
    DWORD dwTimeStamp;
};

// The codes of what is raised, or returned, when a library or a function is missing.
constexpr DWORD delayLoadFailure(DWORD error) noexcept {
    return 0xC06D0000 | error;
}

extern "C" {
// Called by the stubs on a function's first use. Never returns null: what is missing
// raises delayLoadFailure, with the library's and the function's names as arguments.
FARPROC WINAPI __delayLoadHelper2(const ImgDelayDescr* descriptor, FARPROC* place);
// Binds all functions of one delayed library now. Nothing is raised.
HRESULT WINAPI __HrLoadAllImportsForDll(LPCSTR library);
}
