// SPDX-License-Identifier: MIT
// Replaces the thread-local part of Microsoft's start-up code: the directory that tells
// the system's loader what each new thread's copy begins as. Nothing here runs
// constructors of thread-local objects: none of the sources has any.
#include <windows.h>

namespace {

// IMAGE_TLS_DIRECTORY64 with pointers, so that it is constant.
struct TlsDirectory {
    const char* firstByte;
    const char* lastByte;
    unsigned long* index;
    const PIMAGE_TLS_CALLBACK* callbacks;
    DWORD zeroBytes;
    DWORD characteristics;
};
static_assert(sizeof(TlsDirectory) == sizeof(IMAGE_TLS_DIRECTORY64));

}  // namespace

#pragma section(".tls", read, write)
#pragma section(".tls$ZZZ", read, write)
#pragma section(".CRT$XLZ", read)
#pragma section(".rdata$T", read)

extern "C" {
unsigned long _tls_index = 0;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
__declspec(allocate(".CRT$XLZ")) const PIMAGE_TLS_CALLBACK noTlsCallbacks = nullptr;
// The linker finds it by its name.
extern const __declspec(allocate(".rdata$T")) TlsDirectory _tls_used = {
    &_tls_start, &_tls_end, &_tls_index, &noTlsCallbacks, 0, 0};
}
#pragma comment(linker, "/include:_tls_used")
