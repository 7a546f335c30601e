// SPDX-License-Identifier: MIT
// Sees every message box of the calling thread, notes what it shows, and closes it.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "platform/windows.h"

struct MessageBoxSeen {
    std::wstring caption;
    std::wstring text;
    bool hasIcon = false;
    bool hasErrorIcon = false;
    bool hasOwner = false;
    std::vector<std::wstring> buttons;

    bool operator==(const MessageBoxSeen&) const = default;
};

// "caption | text | icon | buttons" for messages of tests.
void PrintTo(const MessageBoxSeen& seen, std::ostream* stream);

// The adapter's, where no capture library can be started.
inline const MessageBoxSeen libraryMissing = {
    L"Velmora Adapter", L"Runtime Libraries not found!", false, false, false, {L"OK"}};

// One at a time. A message box is met when it becomes active: no polling, and no
// box stays open.
class CMessageBoxes {
public:
    CMessageBoxes();
    CMessageBoxes(const CMessageBoxes&) = delete;
    CMessageBoxes& operator=(const CMessageBoxes&) = delete;
    ~CMessageBoxes();

    const std::vector<MessageBoxSeen>& seen() const noexcept { return m_seen; }
    // What has been seen since the last call.
    std::vector<MessageBoxSeen> take();

private:
    static LRESULT CALLBACK onWindow(int code, WPARAM window, LPARAM details);
    void meet(HWND window);

    HHOOK m_hook;
    HWND m_lastMet = nullptr;
    std::vector<MessageBoxSeen> m_seen;
};
