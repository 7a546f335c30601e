// SPDX-License-Identifier: MIT
#include "platform/log_trace.h"

// NOLINTNEXTLINE(cert-dcl50-cpp): its callers pass a format and its arguments.
void LogTrace(const wchar_t* /*fileName*/, const char* /*format*/, ...) noexcept {}
