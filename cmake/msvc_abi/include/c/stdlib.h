// SPDX-License-Identifier: MIT
// Adds to Wine's <stdlib.h> what libc++'s <locale> mentions besides.
#pragma once

#include_next <stdlib.h>

#include <corecrt.h>

#ifdef __cplusplus
extern "C" {
#endif

int __cdecl ___mb_cur_max_func(void);
#define MB_CUR_MAX ___mb_cur_max_func()

double __cdecl _strtod_l(const char*, char**, _locale_t);
float __cdecl _strtof_l(const char*, char**, _locale_t);

#ifdef __cplusplus
}
#endif
