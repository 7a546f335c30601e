// SPDX-License-Identifier: MIT
// Work that a test puts inside calls.
#include <gtest/gtest.h>

#include "tests/win32/win32_log.h"

namespace {

TEST(InsideCalls, RunsOnTheCallingThreadWhenTheCallIsInTheLog) {
    win32::reset();
    int runs = 0;
    win32::runInside("OutputDebugStringW", [&] {
        ++runs;
        EXPECT_EQ(win32::calls().back().arguments, "seen");
        EXPECT_EQ(win32::calls().back().threadId, GetCurrentThreadId());
    });
    OutputDebugStringW(L"seen");
    OutputDebugStringW(L"seen");
    SetDllDirectoryW(L"C:\\");
    EXPECT_EQ(runs, 2);
    win32::reset();
}

TEST(InsideCalls, RunsBeforeTheCallActs) {
    win32::reset();
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    bool wasSignalled = true;
    win32::runInside("SetEvent",
                     [&] { wasSignalled = WaitForSingleObject(event, 0) == WAIT_OBJECT_0; });
    SetEvent(event);
    EXPECT_FALSE(wasSignalled);
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
    win32::reset();
    CloseHandle(event);
}

TEST(InsideCalls, EndsWithAnEmptyFunctionAndWithAReset) {
    win32::reset();
    int runs = 0;
    win32::runInside("OutputDebugStringW", [&] { ++runs; });
    win32::runInside("OutputDebugStringW", {});
    OutputDebugStringW(L"one");
    win32::runInside("OutputDebugStringW", [&] { ++runs; });
    win32::reset();
    OutputDebugStringW(L"two");
    EXPECT_EQ(runs, 0);
}

TEST(InsideCalls, AreToldApartFromTheCodeAroundThem) {
    win32::reset();
    bool inside = false;
    win32::runInside("OutputDebugStringW", [&] { inside = win32::isInsideCall(); });
    EXPECT_FALSE(win32::isInsideCall());
    OutputDebugStringW(L"seen");
    EXPECT_TRUE(inside);
    EXPECT_FALSE(win32::isInsideCall());
    win32::reset();
}

}  // namespace
