// SPDX-License-Identifier: MIT
// What reaches a person: message boxes and debugger texts. Both are kept for the
// tests; nothing is shown.
#include <array>
#include <mutex>

#include "tests/win32/call_log.h"
#include "tests/win32/win32_log.h"

namespace win32 {
namespace {

struct OutputState {
    std::mutex mutex;
    std::vector<MessageBox> boxes;
};

// Outlives every other static object, whichever asks last.
OutputState& outputState() {
    static OutputState* const instance = new OutputState;
    return *instance;
}

}  // namespace

std::vector<MessageBox> messageBoxes() {
    const std::lock_guard guard(outputState().mutex);
    return outputState().boxes;
}

void detail::resetMessageBoxes() {
    const std::lock_guard guard(outputState().mutex);
    outputState().boxes.clear();
}

}  // namespace win32

// Short texts pass without allocation: the road of a frame passes here.
void OutputDebugStringW(LPCWSTR text) {
    const win32::detail::CInside inside;
    std::array<char, 128> narrow;
    const std::size_t size = win32::detail::utf8(text, narrow);
    if (size <= narrow.size()) {
        win32::detail::record("OutputDebugStringW", {narrow.data(), size});
    } else {
        win32::detail::record("OutputDebugStringW", win32::detail::utf8(text));
    }
}

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    const win32::detail::CInside inside;
    using win32::detail::utf8;
    win32::detail::record("MessageBoxW", win32::detail::pointerText(owner) + ", " + utf8(text) +
                                             ", " + utf8(caption) + ", " + std::to_string(type));
    {
        const std::lock_guard guard(win32::outputState().mutex);
        win32::outputState().boxes.push_back(
            {owner, utf8(text), utf8(caption), type, GetCurrentThreadId()});
    }
    return static_cast<int>(win32::detail::injected("MessageBoxW").value_or(IDOK));
}
