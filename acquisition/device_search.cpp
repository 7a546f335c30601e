// SPDX-License-Identifier: MIT
#include "acquisition/device_search.h"

#include <cstdint>

#include "capture/conversions.h"
#include "platform/text.h"

namespace {

enum class Comparison { same, other, untold };

// Closes the device when the library throws before it is known: it may be another one.
Comparison compareOpenDevice(DShowLib::Grabber& grabber, std::string_view serialText) {
    try {
        std::int64_t serialNumber = 0;
        if (!grabber.getDev().getSerialNumber(serialNumber)) {
            return Comparison::untold;
        }
        return hexadecimalText(serialNumber) == serialText ? Comparison::same : Comparison::other;
    } catch (...) {
        grabber.closeDev();
        throw;
    }
}

}  // namespace

bool reopenDevice(DShowLib::Grabber& grabber, std::string_view serialText) {
    for (const auto& item : toStandard(grabber.getAvailableVideoCaptureDevices_())) {
        // The serial number is read from the open device.
        grabber.openDev(item);
        switch (compareOpenDevice(grabber, serialText)) {
            case Comparison::same:
                return true;
            case Comparison::other:
                grabber.closeDev();
                break;
            case Comparison::untold:
                break;
        }
    }
    return false;
}
