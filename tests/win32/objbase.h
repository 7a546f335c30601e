// SPDX-License-Identifier: MIT
// COM as far as the native build needs it: IUnknown, start and stop per thread,
// task memory, and the text of an identifier. Found through platform/windows.h.
#pragma once

#include "tests/win32/windows.h"

inline constexpr IID IID_IUnknown = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

// As on Windows there is no virtual destructor: objects go by Release alone.
struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

enum COINIT : DWORD { COINIT_MULTITHREADED = 0x0, COINIT_APARTMENTTHREADED = 0x2 };

HRESULT CoInitializeEx(LPVOID reserved, DWORD apartment);
void CoUninitialize();

LPVOID CoTaskMemAlloc(SIZE_T size);
void CoTaskMemFree(LPVOID memory);

// "{284C0E07-010B-45BF-8291-09D90A459B28}", from CoTaskMemAlloc.
HRESULT StringFromCLSID(REFCLSID identifier, LPOLESTR* text);
