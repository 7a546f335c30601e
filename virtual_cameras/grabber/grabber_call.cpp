// SPDX-License-Identifier: MIT
#include "virtual_cameras/grabber/grabber_call.h"

#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"

namespace virtual_cameras {

bool CGrabberCall::mayGoOn(CWorldLock&) {
    if (fails()) {
        const std::string text = failText();
        m_grabber.lastError = text.empty() ? refusal::injected : text;
        return false;
    }
    return libraryIsReady() || refusesMisuse(refusal::notReady);
}

bool CGrabberCall::refuses(const char* why) {
    m_grabber.lastError = why;
    return false;
}

bool CGrabberCall::refusesMisuse(const char* why) {
    countMisuse(std::string(operation()) + ": " + why);
    return refuses(why);
}

bool CGrabberCall::hasDevice(CWorldLock& world) {
    return isDeviceValid(world, m_grabber) ||
           refuses(m_grabber.camera ? refusal::notConnected : refusal::noDevice);
}

bool CGrabberCall::hasIdleDevice(CWorldLock& world) {
    return hasDevice(world) && (!m_grabber.camera->live || refusesMisuse(refusal::live));
}

}  // namespace virtual_cameras
