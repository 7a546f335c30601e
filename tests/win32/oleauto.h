// SPDX-License-Identifier: MIT
// Length-prefixed wide texts, and the two values of a VARIANT_BOOL. Found
// through platform/windows.h.
#pragma once

#include "tests/win32/objbase.h"

#define VARIANT_TRUE (static_cast<VARIANT_BOOL>(-1))
#define VARIANT_FALSE (static_cast<VARIANT_BOOL>(0))

BSTR SysAllocString(const OLECHAR* text);
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
void SysFreeString(BSTR text);
// In characters, without the terminator.
UINT SysStringLen(BSTR text);
