// SPDX-License-Identifier: MIT
// The adapter's diagnostic log, switched off.
#pragma once

// The file that an enabled trace would write.
inline constexpr const wchar_t* traceFileName = L"orvlum.txt";

// Takes a file name, a format and its arguments, and writes nothing. The call
// sites and their texts stay, so that the log comes back with a body here. Any
// thread; never fails.
void LogTrace(const wchar_t* fileName, const char* format, ...) noexcept;
