// SPDX-License-Identifier: MIT
// Start and end of the capture library.
#pragma once

#include "capture/library/export.h"

namespace DShowLib {

// Once per process, before anything else of the library.
CAPTURE_LIBRARY_API bool InitLibrary();
// When nothing of the library is in use any more.
CAPTURE_LIBRARY_API void ExitLibrary();

}  // namespace DShowLib
