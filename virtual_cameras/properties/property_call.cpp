// SPDX-License-Identifier: MIT
#include "virtual_cameras/properties/property_call.h"

#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

std::string CPropertyCall::shown(const GUID& value) {
    return identifierText(value);
}

bool CPropertyCall::hasPlace(const void* place) const {
    if (place == nullptr) {
        countMisuse(std::string(operation()) + " without a place for its result");
    }
    return place != nullptr;
}

bool CPropertyCall::mayGoOn(CWorldLock& world, CPropertyTree& tree) const {
    if (!libraryIsReady() || tree.isOrphaned(world)) {
        countMisuse(std::string(operation()) + " on a device that is no more");
        return false;
    }
    return tree.answers(world);
}

}  // namespace virtual_cameras
