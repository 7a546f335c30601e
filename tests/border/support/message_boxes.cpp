// SPDX-License-Identifier: MIT
#include "tests/border/support/message_boxes.h"

#include <array>
#include <cstddef>
#include <ostream>
#include <utility>

#include "tests/border/support/utf8.h"

namespace {

CMessageBoxes* watching = nullptr;

std::wstring textOf(HWND window) {
    std::array<wchar_t, 512> text{};
    const int size = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return std::wstring(text.data(), static_cast<std::size_t>(size));
}

std::wstring classOf(HWND window) {
    std::array<wchar_t, 64> name{};
    const int size = ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return std::wstring(name.data(), static_cast<std::size_t>(size));
}

void noteStatic(HWND window, MessageBoxSeen& seen) {
    constexpr LONG_PTR typeMask = 0x1F;
    if ((::GetWindowLongPtrW(window, GWL_STYLE) & typeMask) != SS_ICON) {
        seen.text += textOf(window);
        return;
    }
    const LRESULT icon = ::SendMessageW(window, STM_GETICON, 0, 0);
    const HICON error = ::LoadIconA(nullptr, IDI_ERROR);
    seen.hasIcon = seen.hasIcon || icon != 0;
    seen.hasErrorIcon = seen.hasErrorIcon || icon == reinterpret_cast<LRESULT>(error);
}

BOOL CALLBACK noteChild(HWND window, LPARAM place) {
    auto& seen = *reinterpret_cast<MessageBoxSeen*>(place);
    // The box itself is not shown yet: the style tells what will be.
    if ((::GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) == 0) {
        return TRUE;
    }
    const std::wstring name = classOf(window);
    if (name == L"Static") {
        noteStatic(window, seen);
    } else if (name == L"Button") {
        seen.buttons.push_back(textOf(window));
    }
    return TRUE;
}

}  // namespace

void PrintTo(const MessageBoxSeen& seen, std::ostream* stream) {
    *stream << '"' << utf8(seen.caption) << "\" | \"" << utf8(seen.text) << "\" | "
            << (seen.hasErrorIcon ? "error icon"
                : seen.hasIcon    ? "other icon"
                                  : "no icon")
            << (seen.hasOwner ? " | owner |" : " |");
    for (const std::wstring& button : seen.buttons) {
        *stream << " [" << utf8(button) << ']';
    }
}

CMessageBoxes::CMessageBoxes()
    : m_hook(
          ::SetWindowsHookExW(WH_CBT, &CMessageBoxes::onWindow, nullptr, ::GetCurrentThreadId())) {
    watching = this;
}

CMessageBoxes::~CMessageBoxes() {
    ::UnhookWindowsHookEx(m_hook);
    watching = nullptr;
}

std::vector<MessageBoxSeen> CMessageBoxes::take() {
    return std::exchange(m_seen, {});
}

LRESULT CALLBACK CMessageBoxes::onWindow(int code, WPARAM window, LPARAM details) {
    if (code == HCBT_ACTIVATE && watching != nullptr) {
        watching->meet(reinterpret_cast<HWND>(window));
    }
    return ::CallNextHookEx(nullptr, code, window, details);
}

void CMessageBoxes::meet(HWND window) {
    if (window == m_lastMet || classOf(window) != L"#32770") {
        return;
    }
    m_lastMet = window;
    MessageBoxSeen seen;
    seen.caption = textOf(window);
    seen.hasOwner = ::GetWindow(window, GW_OWNER) != nullptr;
    ::EnumChildWindows(window, &noteChild, reinterpret_cast<LPARAM>(&seen));
    m_seen.push_back(std::move(seen));
    ::PostMessageW(window, WM_CLOSE, 0, 0);
}
