// SPDX-License-Identifier: MIT
// Replaces the hook that delayimp.lib has for images without one of their own.
#include <windows.h>

#include <delayimp.h>

const PfnDliHook __pfnDliNotifyHook2 = nullptr;
