/* SPDX-License-Identifier: MIT
 * What the linker's helper for delayed imports shows to its hook. Nothing is delayed in
 * the native build: a test calls the hook itself. */
#pragma once

#include "tests/win32/windows.h"

struct IMAGE_THUNK_DATA {
    union {
        ULONGLONG AddressOfData;
        ULONGLONG Ordinal;  // with the highest bit
    } u1;
};

constexpr bool IMAGE_SNAP_BY_ORDINAL64(ULONGLONG function) {
    return function >> 63U != 0;
}

constexpr ULONGLONG IMAGE_ORDINAL64(ULONGLONG function) {
    return function & 0xFFFFU;
}

struct IMAGE_IMPORT_BY_NAME {
    WORD Hint;
    CHAR Name[1];
};

struct ImgDelayDescr {
    DWORD grAttrs;
    DWORD rvaDLLName;
    DWORD rvaHmod;
    DWORD rvaIAT;
    DWORD rvaINT;
    DWORD rvaBoundIAT;
    DWORD rvaUnloadIAT;
    DWORD dwTimeStamp;
};

enum {
    dliStartProcessing,
    dliNotePreLoadLibrary,
    dliNotePreGetProcAddress,
    dliFailLoadLib,
    dliFailGetProc,
    dliNoteEndProcessing
};

struct DelayLoadInfo {
    DWORD cb;
    const ImgDelayDescr* pidd;
};
using PDelayLoadInfo = DelayLoadInfo*;
using PfnDliHook = FARPROC (*)(unsigned notification, PDelayLoadInfo call);

extern "C" PfnDliHook __pfnDliNotifyHook2;
