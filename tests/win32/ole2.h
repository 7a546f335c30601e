// SPDX-License-Identifier: MIT
// OLE's start on a thread. Found through platform/windows.h.
#pragma once

#include "tests/win32/objbase.h"

HRESULT OleInitialize(LPVOID reserved);
void OleUninitialize();
