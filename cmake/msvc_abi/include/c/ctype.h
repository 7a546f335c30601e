// SPDX-License-Identifier: MIT
// Adds to Wine's <ctype.h> what libc++'s <locale> mentions besides.
#pragma once

#include_next <ctype.h>

#ifdef __cplusplus
extern "C" {
#endif

int __cdecl _islower_l(int, _locale_t);
int __cdecl _isupper_l(int, _locale_t);

#ifdef __cplusplus
}
#endif
