// SPDX-License-Identifier: MIT
// The adapter's debugger texts, as a vectored exception handler of a benchmark meets them:
// OutputDebugString raises one of these where the system does not take the text itself.
#pragma once

#include "platform/windows.h"

namespace bench {

inline bool isDebuggerText(const EXCEPTION_RECORD& record) {
    constexpr DWORD narrowText = 0x40010006;  // DBG_PRINTEXCEPTION_C
    constexpr DWORD wideText = 0x4001000A;    // DBG_PRINTEXCEPTION_WIDE_C
    return record.ExceptionCode == narrowText || record.ExceptionCode == wideText;
}

}  // namespace bench
