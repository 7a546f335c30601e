// SPDX-License-Identifier: MIT
// The call log of the Win32 subset, and the modules, files, boxes and texts in it.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tests/win32/win32_log.h"

using namespace std::chrono_literals;

class CallLog : public ::testing::Test {
protected:
    void SetUp() override { win32::reset(); }
};

TEST_F(CallLog, KeepsOrderArgumentsAndThread) {
    SetDllDirectoryW(L"C:\\k\u00e4se\\");
    std::uint32_t other = 0;
    std::thread([&other] {
        other = GetCurrentThreadId();
        OutputDebugStringW(L"text\n");
    }).join();
    const std::vector<win32::Call> calls = win32::calls();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ("SetDllDirectoryW", calls[0].name);
    EXPECT_EQ("C:\\k\xC3\xA4se\\", calls[0].arguments);
    EXPECT_EQ(GetCurrentThreadId(), calls[0].threadId);
    EXPECT_EQ("OutputDebugStringW", calls[1].name);
    EXPECT_EQ("text\n", calls[1].arguments);
    EXPECT_EQ(1u, calls[1].sequence);
    EXPECT_EQ(other, calls[1].threadId);
}

TEST_F(CallLog, KeepsLongTextsWhole) {
    const std::wstring text(1000, L'\u00e4');
    OutputDebugStringW(text.c_str());
    ASSERT_EQ(1u, win32::debuggerTexts().size());
    EXPECT_EQ(2000u, win32::debuggerTexts()[0].size());
}

TEST_F(CallLog, WaitingLooksOnlyAtLaterCalls) {
    OutputDebugStringW(L"one");
    std::uint64_t sequence = 99;
    EXPECT_TRUE(win32::waitForCall("OutputDebugStringW", 0, 60s, &sequence));
    EXPECT_EQ(0u, sequence);
    EXPECT_FALSE(win32::waitForCall("OutputDebugStringW", 1, 0ms));
    EXPECT_FALSE(win32::waitForCall("SetEvent", 0, 0ms));
}

TEST_F(CallLog, ACallOnAnotherThreadWakesTheWait) {
    std::thread writer([] { OutputDebugStringW(L"text"); });
    EXPECT_TRUE(win32::waitForCall("OutputDebugStringW", 0, 60s));
    writer.join();
}

TEST_F(CallLog, AFullLogCountsWhatItLoses) {
    for (int i = 0; i < 65537; ++i) {
        OutputDebugStringW(L"x");
    }
    EXPECT_EQ(65536u, win32::callCount());
    EXPECT_EQ(1u, win32::lostCalls());
    win32::reset();
    EXPECT_EQ(0u, win32::callCount());
    EXPECT_EQ(0u, win32::lostCalls());
}

TEST_F(CallLog, ModulePathIsCutToTheBuffer) {
    wchar_t path[MAX_PATH] = {};
    EXPECT_EQ(30u, GetModuleFileNameW(nullptr, path, MAX_PATH));
    EXPECT_STREQ(L"C:\\adapter\\velmora_adapter.dll", path);
    win32::setModulePath(L"C:\\a.dll");
    EXPECT_EQ(4u, GetModuleFileNameW(nullptr, path, 4));
    EXPECT_STREQ(L"C:\\", path);
    EXPECT_EQ(122u, GetLastError());
}

TEST_F(CallLog, FilesAreFoundByPatternWithoutCase) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(L"C:\\ADAPTER\\orv_caplb11*.dll", &found);
    ASSERT_NE(INVALID_HANDLE_VALUE, search);
    EXPECT_STREQ(L"ORV_CAPLB11_x64.dll", found.cFileName);
    EXPECT_EQ(1, win32::openSearches());
    EXPECT_EQ(TRUE, FindClose(search));
    EXPECT_EQ(0, win32::openSearches());
    EXPECT_EQ(INVALID_HANDLE_VALUE, FindFirstFileW(L"C:\\other\\ORV_CAPLB11*.dll", &found));
    win32::setFiles({});
    EXPECT_EQ(INVALID_HANDLE_VALUE, FindFirstFileW(L"C:\\adapter\\ORV_CAPLB11*.dll", &found));
}

TEST_F(CallLog, LibrariesLoadWhenTheirFileIsThere) {
    EXPECT_EQ(nullptr, LoadLibraryW(L"C:\\missing.dll"));
    EXPECT_EQ(126u, GetLastError());
    const HMODULE module = LoadLibraryW(L"C:\\adapter\\ORV_CAPLB11_x64.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(nullptr, GetProcAddress(module, "GetVideoChannel"));
    const FARPROC procedure = [] { return std::intptr_t{7}; };
    win32::setProcAddress("GetVideoChannel", procedure);
    EXPECT_EQ(procedure, GetProcAddress(module, "GetVideoChannel"));
}

TEST_F(CallLog, MessageBoxesAreKept) {
    EXPECT_EQ(1, MessageBoxW(nullptr, L"rawMemory == NULL", L"Eror", MB_OK));
    ASSERT_EQ(1u, win32::messageBoxes().size());
    const win32::MessageBox box = win32::messageBoxes()[0];
    EXPECT_EQ(nullptr, box.owner);
    EXPECT_EQ("rawMemory == NULL", box.text);
    EXPECT_EQ("Eror", box.caption);
    EXPECT_EQ(0u, box.type);
}

TEST_F(CallLog, SlimLocksExcludeAndConditionsWake) {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
    bool ready = false;
    AcquireSRWLockExclusive(&lock);
    std::thread other([&] {
        AcquireSRWLockExclusive(&lock);
        ready = true;
        ReleaseSRWLockExclusive(&lock);
        WakeAllConditionVariable(&changed);
    });
    while (!ready) {
        ASSERT_EQ(TRUE, SleepConditionVariableSRW(&changed, &lock, INFINITE, 0));
    }
    EXPECT_EQ(FALSE, SleepConditionVariableSRW(&changed, &lock, 0, 0));
    EXPECT_EQ(1460u, GetLastError());
    ReleaseSRWLockExclusive(&lock);
    other.join();
}
