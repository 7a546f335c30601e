// SPDX-License-Identifier: MIT
// Replaces the entry of console programs in Microsoft's start-up code.
#include <stdlib.h>

#include <corecrt_startup.h>

#include "cmake/msvc_abi/image_start.h"

extern "C" {

int __cdecl main(int argc, char** argv);

int mainCRTStartup() {
    _configure_narrow_argv(_crt_argv_unexpanded_arguments);
    _crt_atexit(&endImage);
    if (!startImage()) {
        exit(255);
    }
    exit(main(*__p___argc(), *__p___argv()));
}
}
