// SPDX-License-Identifier: MIT
// Finding a camera again that was lost.
#pragma once

#include <string_view>

#include "capture/capture_library.h"

// Opens the connected device with that serial text, one after the other in the
// library's order until it is found. Whether it was. A device of another serial number is
// closed again, and so is one that the library throws about; one that tells none stays
// open until the next one replaces it. Host thread, COM started; what the library throws
// passes on.
bool reopenDevice(DShowLib::Grabber& grabber, std::string_view serialText);
