// SPDX-License-Identifier: MIT
// The list of texts that a map-strings interface hands out.
#pragma once

#include <string>
#include <vector>

#include "capture/library/property_items.h"
#include "virtual_cameras/properties/property_tree.h"

namespace virtual_cameras {

// Made without a reference: it goes when the last that a caller adds is released.
DShowLib::IVCDTexts* makeTexts(CPropertyTree& tree, std::vector<std::string> texts);

}  // namespace virtual_cameras
