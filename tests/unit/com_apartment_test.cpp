// SPDX-License-Identifier: MIT
// What the guard of COM leaves behind, on a thread of its own for each test, judged
// by what the system answers afterwards.
#include "platform/com_apartment.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <type_traits>

namespace {

void onFreshThread(const std::function<void()>& body) {
    std::thread(body).join();
}

// Whether COM is started on this thread. Leaves the count as it was.
bool comIsStarted() {
    const HRESULT result = ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (SUCCEEDED(result)) {
        ::CoUninitialize();
    }
    return result != S_OK;
}

// How many starts of COM are open on this thread; ends them all.
int stopAll() {
    int count = 0;
    while (comIsStarted()) {
        ::CoUninitialize();
        ++count;
    }
    return count;
}

TEST(ComApartment, StartsTheMultithreadedApartment) {
    onFreshThread([] {
        const CComApartment com(ComBalance::onlyFirst);
        // Refused, since the thread's apartment is another one.
        EXPECT_EQ(RPC_E_CHANGED_MODE, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        EXPECT_EQ(S_FALSE, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        ::CoUninitialize();
    });
}

TEST(ComApartment, FirstStartIsStoppedWithEitherBalance) {
    for (const ComBalance balance : {ComBalance::onlyFirst, ComBalance::firstAndNested}) {
        onFreshThread([balance] {
            {
                const CComApartment com(balance);
                EXPECT_TRUE(com.stopsAtEnd());
                EXPECT_TRUE(comIsStarted());
            }
            EXPECT_EQ(0, stopAll());
        });
    }
}

TEST(ComApartment, NestedStartIsStoppedWhereTheBalanceSaysSo) {
    onFreshThread([] {
        ASSERT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        {
            const CComApartment com(ComBalance::firstAndNested);
            EXPECT_TRUE(com.stopsAtEnd());
        }
        EXPECT_EQ(1, stopAll());
    });
}

TEST(ComApartment, NestedStartKeepsItsCountWhereOnlyTheFirstIsBalanced) {
    onFreshThread([] {
        ASSERT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        {
            const CComApartment com(ComBalance::onlyFirst);
            EXPECT_FALSE(com.stopsAtEnd());
        }
        EXPECT_EQ(2, stopAll());
    });
}

TEST(ComApartment, FailedStartIsNeverStopped) {
    for (const ComBalance balance : {ComBalance::onlyFirst, ComBalance::firstAndNested}) {
        onFreshThread([balance] {
            ASSERT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
            {
                const CComApartment com(balance);
                EXPECT_FALSE(com.stopsAtEnd());
            }
            EXPECT_EQ(1, stopAll());
        });
    }
}

TEST(ComApartment, StretchesOneAfterTheOtherLeaveNothingOpen) {
    onFreshThread([] {
        for (int i = 0; i < 3; ++i) {
            const CComApartment com(ComBalance::firstAndNested);
            EXPECT_TRUE(com.stopsAtEnd());
        }
        EXPECT_EQ(0, stopAll());
    });
}

TEST(ComApartment, GuardIsNotCopied) {
    static_assert(!std::is_copy_constructible_v<CComApartment>);
    static_assert(!std::is_copy_assignable_v<CComApartment>);
    static_assert(!std::is_move_constructible_v<CComApartment>);
}

}  // namespace
