// SPDX-License-Identifier: MIT
// A grabber is one opened camera.
// Error: deleted
#include "capture/library/grabber.h"

#ifdef MUST_NOT_COMPILE
void assign(DShowLib::Grabber& left, const DShowLib::Grabber& right) {
    left = right;
}
#endif
