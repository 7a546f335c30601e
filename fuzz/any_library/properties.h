// SPDX-License-Identifier: MIT
// The device's properties: a tree of items, elements and interfaces.
#pragma once

#include <cstdint>

#include "capture/library/handles.h"
#include "capture/library/property_items.h"

namespace any_library {

// One of the trees that are known by number, or one that the input describes. Its
// objects stay in the world.
DShowLib::smart_com<DShowLib::IVCDPropertyItems> makeTree(std::uint8_t choice);

}  // namespace any_library
