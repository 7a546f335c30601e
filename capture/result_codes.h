// SPDX-License-Identifier: MIT
// Result codes of the device-property interfaces.
#pragma once

#include <cstdint>

#include "platform/windows.h"

// Throws a failing (negative) result code as a 32-bit signed integer: that is
// how hosts know failures of the capture library's interfaces.
inline void throwIfFailed(HRESULT result) {
    if (result < 0) {
        throw static_cast<std::int32_t>(result);
    }
}
