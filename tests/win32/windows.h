// SPDX-License-Identifier: MIT
// The Windows kernel and user functions that the native build supplies, with the
// types and constants that go with them. platform/windows.h finds this file in
// the place of the system's header.
//
// What the subset consists of:
//   windows.h   types, modules, files, events, locks, texts, clock, message box
//   objbase.h   IUnknown, COM start and stop, task memory, identifiers
//   ole2.h      OleInitialize
//   oleauto.h   BSTR
//   win32_log.h not Windows at all: how tests read what was called, and decide
//               what the calls answer
// A wide character has 32 bits here and holds a whole code point; `LONG` and its
// kin keep their Windows widths. Everything stands on the standard library's
// own mutexes and atomics, so that sanitizers see the true order of things.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

#define WINAPI
#define APIENTRY
#define CALLBACK
#define STDMETHODCALLTYPE

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define INFINITE 0xFFFFFFFFu
#define CP_UTF8 65001u
#define LOAD_WITH_ALTERED_SEARCH_PATH 0x00000008u
#define MB_ERR_INVALID_CHARS 0x00000008u
#define WC_ERR_INVALID_CHARS 0x00000080u

#define DLL_PROCESS_DETACH 0u
#define DLL_PROCESS_ATTACH 1u
#define DLL_THREAD_ATTACH 2u
#define DLL_THREAD_DETACH 3u

#define WAIT_OBJECT_0 0u
#define WAIT_ABANDONED 0x80u
#define WAIT_TIMEOUT 258u
#define WAIT_FAILED 0xFFFFFFFFu

#define ERROR_SUCCESS 0u
#define ERROR_FILE_NOT_FOUND 2u
#define ERROR_INVALID_HANDLE 6u
#define ERROR_NOT_ENOUGH_MEMORY 8u
#define ERROR_INVALID_PARAMETER 87u
#define ERROR_INSUFFICIENT_BUFFER 122u
#define ERROR_MOD_NOT_FOUND 126u
#define ERROR_PROC_NOT_FOUND 127u
#define ERROR_INVALID_FLAGS 1004u
#define ERROR_NO_UNICODE_TRANSLATION 1113u
#define ERROR_TIMEOUT 1460u

#define MB_OK 0x00000000u
#define MB_ICONERROR 0x00000010u
#define MB_ICONWARNING 0x00000030u
#define MB_ICONINFORMATION 0x00000040u
#define IDOK 1

#define S_OK static_cast<HRESULT>(0)
#define S_FALSE static_cast<HRESULT>(1)
#define E_NOTIMPL static_cast<HRESULT>(0x80004001)
#define E_NOINTERFACE static_cast<HRESULT>(0x80004002)
#define E_POINTER static_cast<HRESULT>(0x80004003)
#define E_FAIL static_cast<HRESULT>(0x80004005)
#define E_UNEXPECTED static_cast<HRESULT>(0x8000FFFF)
#define E_ACCESSDENIED static_cast<HRESULT>(0x80070005)
#define E_OUTOFMEMORY static_cast<HRESULT>(0x8007000E)
#define E_INVALIDARG static_cast<HRESULT>(0x80070057)
#define RPC_E_CHANGED_MODE static_cast<HRESULT>(0x80010106)
#define SUCCEEDED(result) (static_cast<HRESULT>(result) >= 0)
#define FAILED(result) (static_cast<HRESULT>(result) < 0)

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD64 = std::uint64_t;
using SIZE_T = std::size_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using HRESULT = std::int32_t;
using VARIANT_BOOL = std::int16_t;
using CHAR = char;
using WCHAR = wchar_t;
using OLECHAR = wchar_t;
using PVOID = void*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPOLESTR = wchar_t*;
using LPCOLESTR = const wchar_t*;
using LPBOOL = BOOL*;
using LPDWORD = DWORD*;
using BSTR = wchar_t*;
using HANDLE = void*;
using HWND = struct HWND__*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using FARPROC = std::intptr_t (*)();

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using CLSID = GUID;
using IID = GUID;
using REFGUID = const GUID&;
using REFCLSID = const CLSID&;
using REFIID = const IID&;

constexpr bool operator==(REFGUID left, REFGUID right) noexcept {
    bool same = left.Data1 == right.Data1 && left.Data2 == right.Data2 && left.Data3 == right.Data3;
    for (std::size_t i = 0; i < sizeof(left.Data4); ++i) {
        same = same && left.Data4[i] == right.Data4[i];
    }
    return same;
}
constexpr bool IsEqualGUID(REFGUID left, REFGUID right) noexcept {
    return left == right;
}
constexpr bool IsEqualIID(REFIID left, REFIID right) noexcept {
    return left == right;
}

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

// Only the file's name is filled in; the rest is zero.
struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    WCHAR cFileName[MAX_PATH];
    WCHAR cAlternateFileName[14];
};
using LPWIN32_FIND_DATAW = WIN32_FIND_DATAW*;

struct SRWLOCK {
    std::mutex mutex;
};
using PSRWLOCK = SRWLOCK*;
#define SRWLOCK_INIT \
    {}

struct CONDITION_VARIABLE {
    std::condition_variable condition;
};
using PCONDITION_VARIABLE = CONDITION_VARIABLE*;
#define CONDITION_VARIABLE_INIT \
    {}

DWORD GetLastError();
void SetLastError(DWORD error);
DWORD GetCurrentThreadId();

DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);
HMODULE GetModuleHandleW(LPCWSTR name);
HMODULE LoadLibraryW(LPCWSTR name);
HMODULE LoadLibraryExW(LPCWSTR name, HANDLE file, DWORD flags);
BOOL FreeLibrary(HMODULE module);
FARPROC GetProcAddress(HMODULE module, LPCSTR name);
BOOL SetDllDirectoryW(LPCWSTR path);
HANDLE FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found);
BOOL FindClose(HANDLE search);

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES attributes, BOOL manualReset, BOOL signalled,
                    LPCSTR name);
HANDLE CreateEventW(LPSECURITY_ATTRIBUTES attributes, BOOL manualReset, BOOL signalled,
                    LPCWSTR name);
BOOL SetEvent(HANDLE event);
BOOL ResetEvent(HANDLE event);
DWORD WaitForSingleObject(HANDLE event, DWORD milliseconds);
BOOL CloseHandle(HANDLE event);

void InitializeSRWLock(PSRWLOCK lock);
void AcquireSRWLockExclusive(PSRWLOCK lock);
BOOL TryAcquireSRWLockExclusive(PSRWLOCK lock);
void ReleaseSRWLockExclusive(PSRWLOCK lock);
void InitializeConditionVariable(PCONDITION_VARIABLE condition);
BOOL SleepConditionVariableSRW(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD milliseconds,
                               ULONG flags);
void WakeConditionVariable(PCONDITION_VARIABLE condition);
void WakeAllConditionVariable(PCONDITION_VARIABLE condition);

BOOL QueryPerformanceCounter(LARGE_INTEGER* count);
BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency);

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int size, LPWSTR wide,
                        int wideSize);
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int wideSize, LPSTR text,
                        int size, LPCSTR defaultCharacter, LPBOOL usedDefault);

void OutputDebugStringW(LPCWSTR text);
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
