// SPDX-License-Identifier: MIT
// The one device property of the other capture library: "Brightness", "Value", a
// range of 0 to 100 at 25. For its own sources.
#pragma once

#include "capture/library/property_items.h"

namespace other_library {

// Lives as long as the library; counts no references.
DShowLib::IVCDPropertyItems* brightnessItems();

}  // namespace other_library
