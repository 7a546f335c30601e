// SPDX-License-Identifier: MIT
// Events of the Win32 subset, and what tests can make of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

#include "tests/win32/win32_log.h"

using namespace std::chrono_literals;

class Events : public ::testing::Test {
protected:
    void SetUp() override { win32::reset(); }
};

TEST_F(Events, ManualResetStaysSignalledUntilReset) {
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(258u, WaitForSingleObject(event, 0));
    EXPECT_EQ(TRUE, SetEvent(event));
    EXPECT_EQ(0u, WaitForSingleObject(event, 0));
    EXPECT_EQ(0u, WaitForSingleObject(event, 0));
    EXPECT_EQ(TRUE, ResetEvent(event));
    EXPECT_EQ(258u, WaitForSingleObject(event, 0));
    EXPECT_EQ(TRUE, CloseHandle(event));
}

TEST_F(Events, AutoResetReleasesOneWait) {
    const HANDLE event = CreateEventW(nullptr, FALSE, TRUE, nullptr);
    EXPECT_EQ(0u, WaitForSingleObject(event, INFINITE));
    EXPECT_EQ(258u, WaitForSingleObject(event, 0));
    CloseHandle(event);
}

TEST_F(Events, OpenEventsAreCounted) {
    const std::int64_t before = win32::openEvents();
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(before + 1, win32::openEvents());
    CloseHandle(event);
    EXPECT_EQ(before, win32::openEvents());
}

TEST_F(Events, ABlockedWaitIsInTheLogAlready) {
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    DWORD result = WAIT_FAILED;
    std::thread waiter([&] { result = WaitForSingleObject(event, 60000); });
    ASSERT_TRUE(win32::waitForCall("WaitForSingleObject", 0, 60s));
    SetEvent(event);
    waiter.join();
    EXPECT_EQ(0u, result);
    CloseHandle(event);
}

TEST_F(Events, InjectedResultsAnswerOnceEachThenAlways) {
    const HANDLE event = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    win32::injectAlways("WaitForSingleObject", WAIT_TIMEOUT);
    win32::injectResults("WaitForSingleObject", {WAIT_FAILED, 0x80});
    EXPECT_EQ(0xFFFFFFFFu, WaitForSingleObject(event, 60000));
    EXPECT_EQ(0x80u, WaitForSingleObject(event, 60000));
    EXPECT_EQ(258u, WaitForSingleObject(event, 60000));
    EXPECT_EQ(258u, WaitForSingleObject(event, 60000));
    win32::clearInjected();
    EXPECT_EQ(0u, WaitForSingleObject(event, 60000));
    CloseHandle(event);
}

TEST_F(Events, AnInvalidHandleFailsTheCall) {
    EXPECT_EQ(0xFFFFFFFFu, WaitForSingleObject(nullptr, 0));
    EXPECT_EQ(6u, GetLastError());
    EXPECT_EQ(FALSE, SetEvent(INVALID_HANDLE_VALUE));
    EXPECT_EQ(FALSE, CloseHandle(nullptr));
}

TEST_F(Events, AFailedCreationGivesNull) {
    win32::injectResults("CreateEventA", {0});
    EXPECT_EQ(nullptr, CreateEventA(nullptr, TRUE, FALSE, nullptr));
}
