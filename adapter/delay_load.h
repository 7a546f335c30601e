// SPDX-License-Identifier: MIT
// How the adapter's delayed calls reach the capture library.
#pragma once

#include "platform/windows.h"

// From here on the first call of each function binds to `library`, wherever the system
// would have looked for a file of that name. `adapter` is the module whose calls they are.
void bindDelayedCalls(HMODULE adapter, HMODULE library) noexcept;

// Starts the capture library. False, with nothing called, where it lacks a function that
// the adapter may call: the call of that function would end the host.
bool startCaptureLibrary();
