// SPDX-License-Identifier: MIT
// Goes before Wine's <winnt.h>, which defines a function that clang knows as its own.
#pragma once

#define _InterlockedCompareExchange128 unusedInterlockedCompareExchange128
#include_next <winnt.h>
#undef _InterlockedCompareExchange128
