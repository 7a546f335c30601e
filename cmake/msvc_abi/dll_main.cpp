// SPDX-License-Identifier: MIT
// Replaces the DllMain that a DLL without one of its own gets from Microsoft's library.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD /*reason*/, LPVOID /*reserved*/) {
    return TRUE;
}
