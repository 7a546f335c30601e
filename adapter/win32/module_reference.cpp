// SPDX-License-Identifier: MIT
#include "adapter/module_reference.h"

#include <atomic>
#include <cstdint>
#include <utility>

#include "platform/windows.h"

namespace {

// Between the thread that closes the last camera and the one that gives the reference
// back for it: a thread must not take away the code that it returns into.
struct Departure {
    HANDLE caller = nullptr;  // set where a reference is being given back
    DWORD callerId = 0;
    HANDLE moduleGoes = nullptr;          // signalled by the library's entry
    std::atomic<bool> returning = false;  // nothing but returns is left to the caller
};

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): the library's entry has
// no context.
HMODULE ownModule = nullptr;
Departure departure;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// Ends without returning into the module.
DWORD WINAPI giveBack(void* module) {
    ::FreeLibraryAndExitThread(static_cast<HMODULE>(module), 0);
}

// The module that this code belongs to; with one reference more where it is `counted`.
HMODULE findOwnModule(bool counted) noexcept {
    HMODULE module = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             (counted ? 0 : GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT),
                         reinterpret_cast<const wchar_t*>(&giveBack), &module);
    return module;
}

void closeHandles() noexcept {
    for (HANDLE* handle : {&departure.caller, &departure.moduleGoes}) {
        if (*handle != nullptr) {
            ::CloseHandle(std::exchange(*handle, nullptr));
        }
    }
}

// Whether the thread runs code of the module. A thread that is gone does not.
bool isInside(HANDLE thread, const void* module) noexcept {
    const auto* base = static_cast<const std::uint8_t*>(module);
    const auto* dos = static_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto start = reinterpret_cast<std::uintptr_t>(module);
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    // The registers of a thread are to be had only while it stands still.
    if (::SuspendThread(thread) == static_cast<DWORD>(-1)) {
        return false;
    }
    const bool known = ::GetThreadContext(thread, &context) != FALSE;
    ::ResumeThread(thread);
    return known && context.Rip >= start &&
           context.Rip < start + headers->OptionalHeader.SizeOfImage;
}

}  // namespace

void holdOwnModule() noexcept {
    if (ownModule == nullptr) {
        ownModule = findOwnModule(true);
    }
}

void releaseOwnModule() noexcept {
    // A host may call from inside another library's entry, where no thread can start: the
    // reference is then given back a little later.
    constexpr DWORD longestWait = 2000;

    HMODULE module = std::exchange(ownModule, nullptr);
    if (module == nullptr) {
        return;
    }
    closeHandles();
    departure.returning = false;
    departure.callerId = ::GetCurrentThreadId();
    departure.caller =
        ::OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, departure.callerId);
    departure.moduleGoes = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE giver = ::CreateThread(nullptr, 0, &giveBack, module, 0, nullptr);
    if (giver == nullptr) {
        // Short of memory: the module stays.
        departure.returning = true;
        return;
    }
    const HANDLE either[] = {giver, departure.moduleGoes};
    const DWORD ended = ::WaitForMultipleObjects(2, either, FALSE, longestWait);
    ::CloseHandle(giver);
    if (ended == WAIT_OBJECT_0) {
        closeHandles();
    }
    departure.returning = true;
}

void letLastCallLeave() noexcept {
    // Where the reference was given back later than its caller could wait for, the host may
    // free the module with that same thread, which is in the system's code then.
    if (departure.caller != nullptr && departure.callerId != ::GetCurrentThreadId()) {
        ::SetEvent(departure.moduleGoes);
        HMODULE module = findOwnModule(false);
        while (!departure.returning || isInside(departure.caller, module)) {
            ::SwitchToThread();
        }
    }
    closeHandles();
}
