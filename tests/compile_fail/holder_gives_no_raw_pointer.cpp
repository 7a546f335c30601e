// SPDX-License-Identifier: MIT
// An interface holder never turns into a raw pointer by itself.
// Error: (cannot convert|no viable conversion)
#include "capture/library/grabber.h"

#ifdef MUST_NOT_COMPILE
DShowLib::IVCDPropertyItems* itemsOf(const DShowLib::Grabber& grabber) {
    return grabber.getAvailableVCDProperties();
}
#endif
