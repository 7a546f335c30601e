// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig.h"

#include "platform/text.h"

namespace virtual_cameras {

std::string cameraId(const RigCamera& camera) {
    return camera.serial ? hexadecimalText(*camera.serial) : camera.name;
}

}  // namespace virtual_cameras
