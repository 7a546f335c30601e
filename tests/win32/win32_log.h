// SPDX-License-Identifier: MIT
// How tests look behind the Win32 subset of the native build: the ordered log of
// its calls, the answers that they give, and what is still open or allocated.
// Any thread, unless a comment says otherwise; usable during static initialisation.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows.h"

namespace win32 {

// Logged, in the order of entry: CloseHandle, CoInitializeEx, CoUninitialize,
// CreateEventA, CreateEventW, FindClose, FindFirstFileW, FreeLibrary,
// GetModuleFileNameW, GetModuleHandleW, GetProcAddress, holdOwnModule, letLastCallLeave,
// LoadLibraryExW, LoadLibraryW, MessageBoxW, OleInitialize, OleUninitialize,
// OutputDebugStringW, releaseOwnModule, ResetEvent, SetDllDirectoryW, SetEvent,
// StringFromCLSID, WaitForSingleObject.
// Not logged, since they are many and have no order that matters: memory, locks,
// text conversion, clock, thread id, last error.
//
// A call is in the log before it acts; a blocked wait is already there. The
// writers of the log don't order each other: writing it hides no data race.
struct Call {
    std::uint64_t sequence;  // counts up from 0 since the last reset
    std::string name;
    // Comma separated; texts as UTF-8 without quotes, numbers decimal, pointers
    // "null" or "0x...", handles of events "event N" (N counts from 1 since the
    // process began). OutputDebugStringW has its text alone.
    std::string arguments;
    std::uint32_t threadId;  // as GetCurrentThreadId gives it
};

// Empties the log and the message boxes, and gives every call its own answer
// again (injected results, work inside calls, module path, files). Open handles, allocations and
// COM counts stay, since they belong to whoever made them. Only while no other
// thread is inside the subset.
void reset();

std::vector<Call> calls();
std::vector<Call> callsOf(std::string_view name);
// The sequence of the next call.
std::uint64_t callCount();
// Calls that found the log full (65536 entries).
std::uint64_t lostCalls();

// Waits until a call of `name` with a sequence of at least `from` is in the log,
// and gives its sequence; false after the deadline.
bool waitForCall(std::string_view name, std::uint64_t from, std::chrono::milliseconds deadline,
                 std::uint64_t* sequence = nullptr);

// The next calls of the function answer with these values, one each, and
// have no other effect, except that an injected success of a COM start counts as
// one. Results are as the function returns them; for those that return a handle
// or memory 0 stands for the failure (null, or INVALID_HANDLE_VALUE for
// FindFirstFileW) and any other value for the function's own answer. Besides the
// logged functions, CoTaskMemAlloc, SysAllocString (both forms),
// MultiByteToWideChar and WideCharToMultiByte take injected results.
void injectResults(std::string_view name, std::initializer_list<std::int64_t> results);
// As above, for every call from now on, after the listed ones are used up.
void injectAlways(std::string_view name, std::int64_t result);
void clearInjected();
// How many of the listed answers of the function have not been given yet.
std::size_t unusedResults(std::string_view name);

// Whether the calling thread is inside a function of the subset that may allocate with
// new, as no function of Windows does.
bool isInsideCall() noexcept;

// Runs `work` inside every further call of `name`, on the calling thread, when the
// call is in the log and before it acts: holds a thread at a chosen place. An empty
// function ends that. The work must not call `name` itself.
void runInside(std::string_view name, std::function<void()> work);

// What GetModuleFileNameW answers; at first "C:\adapter\velmora_adapter.dll".
void setModulePath(std::wstring path);
// Full paths of the files that FindFirstFileW and LoadLibrary see; at first the
// capture library beside the module. LoadLibrary looks for a name without a
// folder in the directory of SetDllDirectoryW.
void setFiles(std::vector<std::wstring> paths);
// What GetProcAddress answers for a name, or "#7" for an ordinal, in every module.
void setProcAddress(std::string_view name, FARPROC address);

struct MessageBox {
    HWND owner;
    std::string text;     // UTF-8
    std::string caption;  // UTF-8
    std::uint32_t type;   // MB_... bits
    std::uint32_t threadId;
};
std::vector<MessageBox> messageBoxes();

// The debugger texts in the log, in order, UTF-8.
std::vector<std::string> debuggerTexts();

// How many starts of COM the calling thread has not yet balanced.
std::int32_t comBalance();
std::int32_t comBalance(std::uint32_t threadId);
// Stops on a thread where COM was not started, over the process.
std::uint32_t unbalancedComStops();

// Alive now: blocks of CoTaskMemAlloc, texts of SysAllocString, events, searches.
std::int64_t taskMemoryBlocks();
std::int64_t bstrs();
std::int64_t openEvents();
std::int64_t openSearches();

}  // namespace win32
