// SPDX-License-Identifier: MIT
#include "tests/channel/trace_recorder.h"

#include <cstdarg>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/log_trace.h"
#include "platform/text.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

namespace {

std::mutex mutex;
std::vector<TraceCall> recorded;

}  // namespace

std::vector<TraceCall> trace_recorder::calls() {
    const std::lock_guard guard(mutex);
    return recorded;
}

void trace_recorder::clear() {
    const std::lock_guard guard(mutex);
    recorded.clear();
}

// In the place of the adapter's own, which lies in an archive and so is not linked.
void LogTrace(const wchar_t* fileName, const char* format, ...) noexcept {
    TraceCall call;
    call.file = toNarrow(std::wstring_view(fileName));
    call.format = format;
    call.win32Calls = win32::callCount();
    call.libraryCalls = virtualCamerasCallCount();
    va_list arguments;
    va_start(arguments, format);
    // The one place with a lone "%s" passes a wide text.
    call.wide = call.format == "%s";
    if (call.wide) {
        call.texts.push_back(toNarrow(std::wstring_view(va_arg(arguments, const wchar_t*))));
    } else {
        for (std::size_t at = call.format.find("%s"); at != std::string::npos;
             at = call.format.find("%s", at + 2)) {
            call.texts.emplace_back(va_arg(arguments, const char*));
        }
    }
    va_end(arguments);
    const std::lock_guard guard(mutex);
    recorded.push_back(std::move(call));
}
