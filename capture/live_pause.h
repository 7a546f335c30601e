// SPDX-License-Identifier: MIT
// Changes that a device takes only while it is not live.
#pragma once

#include "capture/capture_library.h"

// For a start while an exception is on its way: one more must not take its place.
inline void startLiveAnyway(DShowLib::Grabber& grabber) noexcept {
    try {
        grabber.startLive(false);
    } catch (...) {
        // The first one tells what went wrong.
    }
}

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
        startLiveAnyway(grabber);
        throw;
    }
    grabber.startLive(false);
}
