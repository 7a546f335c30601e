// SPDX-License-Identifier: MIT
#include "bench/load_rig.h"

#include <stdexcept>

#include "virtual_cameras/control.h"

void bench::loadRig(const std::string& text) {
    char message[256] = "";
    if (virtualCamerasLoadRig(text.c_str(), message, sizeof(message)) != 0) {
        throw std::runtime_error(std::string("the rig is wrong: ") + message);
    }
}
