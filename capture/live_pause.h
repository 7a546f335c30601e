// SPDX-License-Identifier: MIT
// Changes that a device takes only while it is not live.
#pragma once

#include "capture/capture_library.h"

// Makes the change, with live video stopped for its time where it runs: the results
// of stopping and starting again are not asked for.
template <class Change>
void whileLiveIsPaused(DShowLib::Grabber& grabber, const Change& change) {
    const bool wasLive = grabber.isLive();
    if (wasLive) {
        grabber.stopLive();
    }
    change();
    if (wasLive) {
        grabber.startLive(false);
    }
}
