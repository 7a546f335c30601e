// SPDX-License-Identifier: MIT
// The only include of the Windows and COM headers in this tree.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <objbase.h>
#include <ole2.h>
#include <oleauto.h>
