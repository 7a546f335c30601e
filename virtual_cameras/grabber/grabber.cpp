// SPDX-License-Identifier: MIT
// The grabber itself, who listens to it, and its last error. Its device is in
// grabber_device.cpp, live video in grabber_live.cpp, settings in grabber_settings.cpp.
#include "capture/library/grabber.h"

#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/grabber/grabber_call.h"
#include "virtual_cameras/grabber/item_values.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/live/device_loss.h"

namespace DShowLib {

using virtual_cameras::alive;
using virtual_cameras::CDeliverySession;
using virtual_cameras::CGrabberCall;
using virtual_cameras::CLibraryCall;
using virtual_cameras::CWorldLock;
using virtual_cameras::GrabberState;

namespace {

Grabber::Implementation* startedGrabber(Grabber& owner) {
    CLibraryCall call("Grabber::Grabber", virtual_cameras::NoCamera());
    if (!virtual_cameras::libraryIsReady()) {
        virtual_cameras::countMisuse("Grabber::Grabber: the library is not initialised.");
    }
    auto* inside = new Grabber::Implementation;
    inside->state.owner = &owner;
    alive().grabbers.fetch_add(1, std::memory_order_relaxed);
    call.returns();
    return inside;
}

void endGrabber(CWorldLock& world, GrabberState& state) {
    const std::shared_ptr<CDeliverySession> session = state.session;
    closeDevice(world, state);
    virtual_cameras::waitUntilLossIsTold(world, state);
    if (session) {
        virtual_cameras::deliveries().abandon(world, session);
    }
    alive().listeners.fetch_sub(static_cast<std::uint32_t>(state.listeners.size()),
                                std::memory_order_relaxed);
}

}  // namespace

Grabber::Grabber() : m_implementation(startedGrabber(*this)) {}

Grabber::~Grabber() {
    const bool recorded = virtual_cameras::callLog().isOn();
    const std::string camera = recorded ? m_implementation->cameraName() : std::string();
    {
        CWorldLock world;
        endGrabber(world, m_implementation->state);
    }
    delete m_implementation;
    alive().grabbers.fetch_sub(1, std::memory_order_relaxed);
    if (recorded) {
        virtual_cameras::callLog().add(camera, "Grabber::~Grabber", {}, {});
    }
}

bool Grabber::addListener(GrabberListener* listener, ULONG eventMask) {
    CGrabberCall call("Grabber::addListener", *m_implementation,
                      static_cast<std::uint32_t>(eventMask));
    return call.tries([&](CWorldLock&) {
        if (listener == nullptr) {
            return call.refusesMisuse("There is no listener.");
        }
        m_implementation->state.listeners.push_back({listener, eventMask});
        alive().listeners.fetch_add(1, std::memory_order_relaxed);
        return true;
    });
}

bool Grabber::setOverlayBitmapPathPosition(ULONG path) {
    CGrabberCall call("Grabber::setOverlayBitmapPathPosition", *m_implementation,
                      static_cast<std::uint32_t>(path));
    return call.tries([&](CWorldLock& world) {
        if (!call.hasDevice(world)) {
            return false;
        }
        m_implementation->state.overlayPaths = path;
        return true;
    });
}

Error Grabber::getLastError() const {
    CLibraryCall call("Grabber::getLastError", *m_implementation);
    CWorldLock world;
    const std::string text = call.fails() ? std::string() : m_implementation->state.lastError;
    return call.returnsAs(text, virtual_cameras::errorItem(text));
}

}  // namespace DShowLib
