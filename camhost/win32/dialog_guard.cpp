// SPDX-License-Identifier: MIT
#include "camhost/win32/dialog_guard.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "camhost/base/texts.h"
#include "camhost/win32/wide_text.h"

namespace camhost {

namespace {

constexpr DWORD pollMilliseconds = 50;
constexpr UINT answerMilliseconds = 1000;
constexpr int mostUnread = 10;  // looks at a window whose thread does not answer

std::wstring className(HWND window) {
    wchar_t name[64] = L"";
    const int length = GetClassNameW(window, name, 64);
    return {name, static_cast<std::size_t>(length)};
}

// Asks by message, with a limit, since the window's thread may be stuck, or not have got
// so far: nothing then.
std::optional<std::wstring> windowText(HWND window) {
    wchar_t text[1024] = L"";
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text),
                            SMTO_ABORTIFHUNG, answerMilliseconds, &length) == 0) {
        return std::nullopt;
    }
    return std::wstring(text, std::min<std::size_t>(length, 1023));
}

}  // namespace

// The first look is the maker's: it brings in what the window calls need, which
// the guard's thread must not do while the maker is loading a library.
CDialogGuard::CDialogGuard() : m_end(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    GetDesktopWindow();
    lookAround();
    m_thread = std::thread([this] { watch(); });
}

CDialogGuard::~CDialogGuard() {
    SetEvent(m_end);
    m_thread.join();
    CloseHandle(m_end);
}

std::vector<Dialog> CDialogGuard::closed() {
    const std::lock_guard lock(m_mutex);
    return m_closed;
}

void CDialogGuard::watch() {
    while (WaitForSingleObject(m_end, pollMilliseconds) == WAIT_TIMEOUT) {
        lookAround();
    }
}

void CDialogGuard::lookAround() {
    EnumWindows(onWindow, reinterpret_cast<LPARAM>(this));
}

BOOL CDialogGuard::onWindow(HWND window, LPARAM self) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) != FALSE &&
        className(window) == L"#32770") {
        reinterpret_cast<CDialogGuard*>(self)->dismiss(window);
    }
    return TRUE;
}

BOOL CDialogGuard::onChild(HWND window, LPARAM text) {
    auto& all = *reinterpret_cast<std::optional<std::wstring>*>(text);
    if (className(window) == L"Static") {
        const std::optional<std::wstring> part = windowText(window);
        if (!part) {
            all.reset();
            return FALSE;
        }
        if (!part->empty()) {
            *all += (all->empty() ? L"" : L" ") + *part;
        }
    }
    return TRUE;
}

void CDialogGuard::dismiss(HWND window) {
    if (std::find(m_dismissed.begin(), m_dismissed.end(), window) == m_dismissed.end()) {
        std::optional<std::wstring> text(std::in_place);
        EnumChildWindows(window, onChild, reinterpret_cast<LPARAM>(&text));
        const std::optional<std::wstring> caption = windowText(window);
        if ((!caption || !text) && ++m_unread < mostUnread) {
            return;  // read at the next look
        }
        m_unread = 0;
        const Dialog dialog{toUtf8(caption.value_or(L"")), toUtf8(text.value_or(L""))};
        std::fprintf(stderr, "dialog: \"%s\": %s\n", printable(dialog.caption).c_str(),
                     printable(dialog.text).c_str());
        std::fflush(stderr);
        m_dismissed.push_back(window);
        const std::lock_guard lock(m_mutex);
        m_closed.push_back(dialog);
    }
    if (GetDlgItem(window, IDOK) != nullptr) {
        PostMessageW(window, WM_COMMAND, IDOK, 0);
    } else {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
}

}  // namespace camhost
