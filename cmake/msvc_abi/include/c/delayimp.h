// SPDX-License-Identifier: MIT
// Replaces Microsoft's <delayimp.h>: the tables of delayed imports, and what the helper
// tells a hook. Wants <windows.h> before it.
#pragma once

enum { dliStartProcessing, dliNotePreLoadLibrary, dliNotePreGetProcAddress };

// All places count from the start of the image.
struct ImgDelayDescr {
    DWORD grAttrs;
    DWORD rvaDLLName;
    DWORD rvaHmod;  // of the module, once it is loaded
    DWORD rvaIAT;   // of each function: where it is, or the stub that asks the helper
    DWORD rvaINT;   // of each function's name or number
    DWORD rvaBoundIAT;
    DWORD rvaUnloadIAT;
    DWORD dwTimeStamp;
};
using PCImgDelayDescr = const ImgDelayDescr*;

struct DelayLoadProc {
    BOOL fImportByName;
    union {
        LPCSTR szProcName;
        DWORD dwOrdinal;
    };
};

struct DelayLoadInfo {
    DWORD cb;
    PCImgDelayDescr pidd;
    FARPROC* ppfn;
    LPCSTR szDll;
    DelayLoadProc dlp;
    HMODULE hmodCur;
    FARPROC pfnCur;
    DWORD dwLastError;
};
using PDelayLoadInfo = DelayLoadInfo*;

using PfnDliHook = FARPROC(WINAPI*)(unsigned notification, PDelayLoadInfo info);

extern "C" {
// Null, unless the image defines it.
extern const PfnDliHook __pfnDliNotifyHook2;
}
