// SPDX-License-Identifier: MIT
// Which devices there are, and which one a grabber has open.
#include "virtual_cameras/calls/faults.h"
#include "virtual_cameras/grabber/grabber_call.h"
#include "virtual_cameras/grabber/item_values.h"
#include "virtual_cameras/live/camera_list.h"
#include "virtual_cameras/rig/rig.h"

namespace DShowLib {

using virtual_cameras::Camera;
using virtual_cameras::CGrabberCall;
using virtual_cameras::CWorldLock;
using virtual_cameras::GrabberState;
using virtual_cameras::OpenBehaviour;

namespace {

// False, with the text of the reason, when the camera cannot be opened now. Throws
// where the rig says so.
bool mayOpen(CGrabberCall& call, const Camera* camera) {
    if (camera == nullptr || !camera->attached) {
        return call.refusesMisuse("There is no such video capture device.");
    }
    if (!camera->plugged) {
        return call.refuses(virtual_cameras::refusal::notConnected);
    }
    if (camera->rig.open == OpenBehaviour::throws) {
        call.throwText(virtual_cameras::faults().keep(camera->rig.openText));
    }
    if (camera->rig.open == OpenBehaviour::fails) {
        return call.refuses(camera->rig.openText.c_str());
    }
    if (camera->rig.exclusive && !camera->grabbers.empty()) {
        return call.refuses("The video capture device is in use.");
    }
    return true;
}

}  // namespace

Grabber::tVidCapDevListPtr Grabber::getAvailableVideoCaptureDevices_() const {
    CGrabberCall call("Grabber::getAvailableVideoCaptureDevices_", *m_implementation);
    return call.lists<dvector<VideoCaptureDeviceItem>>([&](CWorldLock& world) {
        tVidCapDevListPtr list(new dvector<VideoCaptureDeviceItem>);
        for (const std::shared_ptr<Camera>& camera : virtual_cameras::cameraList().all(world)) {
            if (camera->plugged) {
                list->push_back(virtual_cameras::deviceItem(camera));
            }
        }
        return list;
    });
}

bool Grabber::openDev(const VideoCaptureDeviceItem& device) {
    const std::shared_ptr<Camera>& camera = device.implementation()->camera;
    CGrabberCall call("Grabber::openDev", *m_implementation,
                      virtual_cameras::About{*device.implementation()},
                      device.implementation()->name);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (virtual_cameras::isLive(world, state)) {
            return call.refusesMisuse(virtual_cameras::refusal::live);
        }
        closeDevice(world, state);
        if (!mayOpen(call, camera.get())) {
            return false;
        }
        openDevice(world, state, camera);
        return true;
    });
}

bool Grabber::closeDev() {
    CGrabberCall call("Grabber::closeDev", *m_implementation);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (!state.camera) {
            return call.refuses(virtual_cameras::refusal::noDevice);
        }
        closeDevice(world, state);
        return true;
    });
}

bool Grabber::isDevValid() const {
    CGrabberCall call("Grabber::isDevValid", *m_implementation);
    return call.tries(
        [&](CWorldLock& world) { return isDeviceValid(world, m_implementation->state); });
}

VideoCaptureDeviceItem Grabber::getDev() const {
    CGrabberCall call("Grabber::getDev", *m_implementation);
    CWorldLock world;
    const VideoCaptureDeviceItem item =
        virtual_cameras::deviceItem(call.mayGoOn(world) ? m_implementation->state.camera : nullptr);
    return call.returnsAs(item.implementation()->name, item);
}

}  // namespace DShowLib
