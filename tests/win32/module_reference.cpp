// SPDX-License-Identifier: MIT
// The native build has no module that could go: what the adapter asks for is logged.
#include "adapter/module_reference.h"

#include "tests/win32/call_log.h"

void holdOwnModule() noexcept {
    win32::detail::record("holdOwnModule", "");
}

void releaseOwnModule() noexcept {
    win32::detail::record("releaseOwnModule", "");
}

void letLastCallLeave() noexcept {
    win32::detail::record("letLastCallLeave", "");
}
