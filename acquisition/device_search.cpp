// SPDX-License-Identifier: MIT
#include "acquisition/device_search.h"

#include <cstdint>

#include "capture/conversions.h"
#include "platform/text.h"

namespace {

enum class Comparison { same, other, untold };

Comparison compareOpenDevice(const DShowLib::Grabber& grabber, std::string_view serialText) {
    std::int64_t serialNumber = 0;
    if (!grabber.getDev().getSerialNumber(serialNumber)) {
        return Comparison::untold;
    }
    return hexadecimalText(serialNumber) == serialText ? Comparison::same : Comparison::other;
}

// Whether the device is the one looked for. Another one is closed, and so is whatever the
// library throws about, also while it is being opened or closed: it may be another one.
bool openIfSame(DShowLib::Grabber& grabber, const DShowLib::VideoCaptureDeviceItem& item,
                std::string_view serialText) {
    try {
        // The serial number is read from the open device.
        grabber.openDev(item);
        const Comparison comparison = compareOpenDevice(grabber, serialText);
        if (comparison == Comparison::other) {
            grabber.closeDev();
        }
        return comparison == Comparison::same;
    } catch (...) {
        grabber.closeDev();
        throw;
    }
}

}  // namespace

bool reopenDevice(DShowLib::Grabber& grabber, std::string_view serialText) {
    for (const auto& item : toStandard(grabber.getAvailableVideoCaptureDevices_())) {
        if (openIfSame(grabber, item, serialText)) {
            return true;
        }
    }
    return false;
}
