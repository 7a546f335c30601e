// SPDX-License-Identifier: MIT
// Nobody takes over an object by accident.
// Error: (conversion|convert)
#include "capture/library/grabber.h"

#ifdef MUST_NOT_COMPILE
DShowLib::smart_ptr<int> adopt(int* owned) {
    return owned;
}
#endif
