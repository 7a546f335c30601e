// SPDX-License-Identifier: MIT
// Replaces the guards of function-local statics in Microsoft's library. The compiler
// calls the header before it constructs and the footer, or abort, after it; it skips
// both for a thread that has seen a later epoch than the guard's.
#include <climits>

#include <windows.h>

namespace {

constexpr int notConstructed = 0;
constexpr int underConstruction = -1;

SRWLOCK lock = SRWLOCK_INIT;
CONDITION_VARIABLE constructed = CONDITION_VARIABLE_INIT;
int lastEpoch = INT_MIN;

}  // namespace

extern "C" {

__declspec(thread) int _Init_thread_epoch = INT_MIN;

// The caller constructs where the guard is left at `underConstruction`.
void __cdecl _Init_thread_header(int* guard) {
    ::AcquireSRWLockExclusive(&lock);
    while (*guard == underConstruction) {
        ::SleepConditionVariableSRW(&constructed, &lock, INFINITE, 0);
    }
    if (*guard == notConstructed) {
        *guard = underConstruction;
    } else {
        _Init_thread_epoch = lastEpoch;
    }
    ::ReleaseSRWLockExclusive(&lock);
}

void __cdecl _Init_thread_footer(int* guard) {
    ::AcquireSRWLockExclusive(&lock);
    *guard = ++lastEpoch;
    _Init_thread_epoch = lastEpoch;
    ::ReleaseSRWLockExclusive(&lock);
    ::WakeAllConditionVariable(&constructed);
}

void __cdecl _Init_thread_abort(int* guard) {
    ::AcquireSRWLockExclusive(&lock);
    *guard = notConstructed;
    ::ReleaseSRWLockExclusive(&lock);
    ::WakeAllConditionVariable(&constructed);
}
}
