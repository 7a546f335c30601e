// SPDX-License-Identifier: MIT
// Changes that a device takes only while it is not live.
#pragma once

#include "capture/capture_library.h"

// Makes the change, with live video stopped for its time where it runs: the results
// of stopping and starting again are not asked for. Live video starts again also where
// the change throws; what it threw then goes on.
template <class Change>
void whileLiveIsPaused(DShowLib::Grabber& grabber, const Change& change) {
    if (!grabber.isLive()) {
        change();
        return;
    }
    grabber.stopLive();
    try {
        change();
    } catch (...) {
        grabber.startLive(false);
        throw;
    }
    grabber.startLive(false);
}
