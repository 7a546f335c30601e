// SPDX-License-Identifier: MIT
#include "adapter/log_trace.h"

void LogTrace(const wchar_t* /*fileName*/, const char* /*format*/, ...) noexcept {}
