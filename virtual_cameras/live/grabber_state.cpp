// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/grabber_state.h"

#include <algorithm>
#include <utility>

#include "virtual_cameras/live/deliveries.h"

namespace virtual_cameras {

bool isLive(CWorldLock& world, const GrabberState& grabber) {
    return grabber.session && !grabber.session->isStopping(world);
}

bool isDeviceValid(CWorldLock&, const GrabberState& grabber) {
    return grabber.camera && !grabber.lost && grabber.camera->attached;
}

void openDevice(CWorldLock& world, GrabberState& grabber, const std::shared_ptr<Camera>& camera) {
    grabber.camera = camera;
    camera->grabbers.push_back(&grabber);
    camera->updateProperties(world);
    if (grabber.sink) {
        connectSink(world, *grabber.sink->implementation(), *camera);
    }
}

void closeDevice(CWorldLock& world, GrabberState& grabber) {
    if (const std::shared_ptr<CDeliverySession> session = grabber.session) {
        deliveries().end(world, session);
    }
    if (grabber.sink) {
        grabber.sink->implementation()->connected = false;
    }
    if (const std::shared_ptr<Camera> camera = std::move(grabber.camera)) {
        auto& openers = camera->grabbers;
        openers.erase(std::remove(openers.begin(), openers.end(), &grabber), openers.end());
        camera->updateProperties(world);
    }
    grabber.camera.reset();
    grabber.lost = false;
}

}  // namespace virtual_cameras

std::string DShowLib::Grabber::Implementation::cameraName() const {
    const virtual_cameras::CWorldLock world;
    return state.camera ? state.camera->id : std::string();
}
