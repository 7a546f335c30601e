// SPDX-License-Identifier: MIT
// Catches what this process passes to OutputDebugString, as a debugger would.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "platform/windows.h"

struct DebuggerText {
    std::string text;
    std::uint32_t threadId;
};

// One at a time. Texts of all threads, in their order.
class CDebuggerOutput {
public:
    CDebuggerOutput();
    CDebuggerOutput(const CDebuggerOutput&) = delete;
    CDebuggerOutput& operator=(const CDebuggerOutput&) = delete;
    ~CDebuggerOutput();

    std::vector<DebuggerText> takeAll();
    // Without the threads.
    std::vector<std::string> take();

private:
    static LONG CALLBACK onException(EXCEPTION_POINTERS* exception);
    void add(std::string text);

    std::mutex m_mutex;
    std::vector<DebuggerText> m_texts;
    void* m_handler;
};
