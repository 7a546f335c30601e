// SPDX-License-Identifier: MIT
// Lists of the device that depend on its current state.
#pragma once

#include "capture/capture_library.h"

// The formats that the device offers for its current norm.
inline DShowLib::Grabber::tVidFmtListPtr availableVideoFormats(const DShowLib::Grabber& grabber) {
    return grabber.getAvailableVideoFormats_(grabber.getVideoNorm());
}
