// SPDX-License-Identifier: MIT
#include "acquisition/device_search.h"

#include <cstdint>

#include "capture/conversions.h"
#include "platform/text.h"

bool reopenDevice(DShowLib::Grabber& grabber, std::string_view serialText) {
    for (const auto& item : toStandard(grabber.getAvailableVideoCaptureDevices_())) {
        // The serial number is read from the open device.
        grabber.openDev(item);
        std::int64_t serialNumber = 0;
        if (!grabber.getDev().getSerialNumber(serialNumber)) {
            continue;
        }
        if (hexadecimalText(serialNumber) == serialText) {
            return true;
        }
        grabber.closeDev();
    }
    return false;
}
