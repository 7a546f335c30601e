// SPDX-License-Identifier: MIT
// Slim locks and their condition variables, the clock, and facts of the thread.
#include <atomic>
#include <chrono>
#include <mutex>

#include "platform/windows.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;
std::atomic<DWORD> lastThreadId{0};

}  // namespace

DWORD GetLastError() {
    return lastError;
}

void SetLastError(DWORD error) {
    lastError = error;
}

// Never given twice, so that what is kept by thread is never another thread's.
DWORD GetCurrentThreadId() {
    thread_local const DWORD id = lastThreadId.fetch_add(1, std::memory_order_relaxed) + 1;
    return id;
}

// A lock and a condition are ready once constructed.
void InitializeSRWLock(PSRWLOCK) {}

void AcquireSRWLockExclusive(PSRWLOCK lock) {
    lock->mutex.lock();
}

BOOL TryAcquireSRWLockExclusive(PSRWLOCK lock) {
    return lock->mutex.try_lock() ? TRUE : FALSE;
}

void ReleaseSRWLockExclusive(PSRWLOCK lock) {
    lock->mutex.unlock();
}

void InitializeConditionVariable(PCONDITION_VARIABLE) {}

BOOL SleepConditionVariableSRW(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD milliseconds,
                               ULONG flags) {
    if (flags != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    std::unique_lock held(lock->mutex, std::adopt_lock);
    bool woken = true;
    if (milliseconds == INFINITE) {
        condition->condition.wait(held);
    } else {
        woken = condition->condition.wait_for(held, std::chrono::milliseconds(milliseconds)) ==
                std::cv_status::no_timeout;
    }
    held.release();
    if (!woken) {
        SetLastError(ERROR_TIMEOUT);
    }
    return woken ? TRUE : FALSE;
}

void WakeConditionVariable(PCONDITION_VARIABLE condition) {
    condition->condition.notify_one();
}

void WakeAllConditionVariable(PCONDITION_VARIABLE condition) {
    condition->condition.notify_all();
}

BOOL QueryPerformanceCounter(LARGE_INTEGER* count) {
    count->QuadPart = std::chrono::duration_cast<std::chrono::nanoseconds>(
                          std::chrono::steady_clock::now().time_since_epoch())
                          .count();
    return TRUE;
}

BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency) {
    frequency->QuadPart = 1'000'000'000;
    return TRUE;
}
