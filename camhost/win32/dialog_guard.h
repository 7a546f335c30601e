// SPDX-License-Identifier: MIT
// A thread that looks for message boxes of this process, tells what they say
// and closes them, so that they never block a console program.
#pragma once

#include <windows.h>

#include <mutex>
#include <thread>
#include <vector>

#include "camhost/base/system.h"

namespace camhost {

class CDialogGuard {
public:
    CDialogGuard();
    CDialogGuard(const CDialogGuard&) = delete;
    CDialogGuard& operator=(const CDialogGuard&) = delete;
    ~CDialogGuard();

    // Any thread.
    std::vector<Dialog> closed();

private:
    void watch();
    void lookAround();
    void dismiss(HWND window);
    static BOOL CALLBACK onWindow(HWND window, LPARAM self);
    static BOOL CALLBACK onChild(HWND window, LPARAM text);

    HANDLE m_end;
    std::mutex m_mutex;
    std::vector<Dialog> m_closed;   // under m_mutex
    std::vector<HWND> m_dismissed;  // the guard's thread only, once it runs
    int m_unread = 0;               // looks at the present window in vain; the guard's thread only
    std::thread m_thread;
};

}  // namespace camhost
