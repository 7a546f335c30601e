// SPDX-License-Identifier: MIT
// Replaces the part of Microsoft's start-up code that DLLs and programs share: the
// tables of initialisers, and the functions that run at the image's end.
#include "cmake/msvc_abi/image_start.h"

#include <corecrt_startup.h>

namespace {

using CInitialiser = int(__cdecl*)();
using CxxInitialiser = void(__cdecl*)();

_onexit_table_t atEnd;

}  // namespace

// The compiler puts pointers into sections between these, and the linker sorts the
// sections by the letters behind the dollar sign.
#pragma section(".CRT$XIA", read)
#pragma section(".CRT$XIZ", read)
#pragma section(".CRT$XCA", read)
#pragma section(".CRT$XCZ", read)
extern "C" {
__declspec(allocate(".CRT$XIA")) const CInitialiser firstCInitialiser = nullptr;
__declspec(allocate(".CRT$XIZ")) const CInitialiser lastCInitialiser = nullptr;
__declspec(allocate(".CRT$XCA")) const CxxInitialiser firstCxxInitialiser = nullptr;
__declspec(allocate(".CRT$XCZ")) const CxxInitialiser lastCxxInitialiser = nullptr;

// The compiler's mark of a source that uses floating point.
int _fltused = 0x9875;

int __cdecl atexit(void(__cdecl* function)()) {
    return _register_onexit_function(&atEnd, reinterpret_cast<_onexit_t>(function));
}
}

bool startImage() {
    _initialize_onexit_table(&atEnd);
    for (const CInitialiser* entry = &firstCInitialiser; entry < &lastCInitialiser; ++entry) {
        if (*entry != nullptr && (*entry)() != 0) {
            return false;
        }
    }
    for (const CxxInitialiser* entry = &firstCxxInitialiser; entry < &lastCxxInitialiser; ++entry) {
        if (*entry != nullptr) {
            (*entry)();
        }
    }
    return true;
}

void endImage() {
    _execute_onexit_table(&atEnd);
}
