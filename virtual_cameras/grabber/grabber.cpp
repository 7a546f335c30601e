// SPDX-License-Identifier: MIT
// The grabber's device and its live video. What the device is set to is in
// grabber_settings.cpp.
#include "capture/library/grabber.h"

#include <algorithm>
#include <utility>

#include "virtual_cameras/grabber/grabber_call.h"
#include "virtual_cameras/grabber/item_values.h"
#include "virtual_cameras/live/session.h"

namespace virtual_cameras {

bool isLive(CWorldLock&, const GrabberState& grabber) {
    return grabber.session && !grabber.session->stopping;
}

bool isDeviceValid(CWorldLock&, const GrabberState& grabber) {
    return grabber.camera && !grabber.lost && grabber.camera->attached;
}

void closeDevice(CWorldLock& world, GrabberState& grabber) {
    if (const std::shared_ptr<Session> session = grabber.session) {
        endSession(world, session);
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

void tellLoss(CWorldLock& world, GrabberState& grabber) {
    const std::vector<Listener> listeners = grabber.listeners;
    const std::string camera = grabber.camera->id;
    DShowLib::Grabber& owner = *grabber.owner;
    // The listener may destroy the grabber.
    const std::shared_ptr<std::uint32_t> telling = grabber.tellingLoss;
    ++*telling;
    world.whileUnlocked([&] {
        std::thread([&] {
            {
                const CWorldLock inside;
                grabber.lossThread = ::GetCurrentThreadId();
            }
            for (const Listener& entry : listeners) {
                if ((entry.events & eventDeviceLost) != 0) {
                    entry.listener->deviceLost(owner);
                }
            }
            if (callLog().isOn()) {
                callLog().add(camera, "GrabberListener::deviceLost", {}, {});
            }
        }).join();
    });
    --*telling;
    world.wakeAll();
}

void unplugCamera(CWorldLock& world, const std::shared_ptr<Camera>& camera) {
    if (!camera->plugged) {
        return;
    }
    camera->plugged = false;
    std::vector<GrabberState*> untold;
    for (GrabberState* opener : camera->grabbers) {
        if (!std::exchange(opener->lost, true)) {
            untold.push_back(opener);
        }
    }
    camera->updateProperties(world);
    // The delivery thread tells the grabber that is live.
    if (const std::shared_ptr<Session> session = camera->live) {
        untold.erase(std::remove(untold.begin(), untold.end(), session->grabber), untold.end());
        session->lost = true;
        endSession(world, session);
    }
    for (GrabberState* opener : untold) {
        const auto& openers = camera->grabbers;
        if (std::find(openers.begin(), openers.end(), opener) != openers.end()) {
            tellLoss(world, *opener);
        }
    }
}

void plugCamera(CWorldLock& world, Camera& camera) {
    if (camera.plugged) {
        return;
    }
    camera.plugged = true;
    camera.properties->powerUp(world);
    camera.updateProperties(world);
}

}  // namespace virtual_cameras

std::string DShowLib::Grabber::Implementation::cameraName() const {
    const virtual_cameras::CWorldLock world;
    return state.camera ? state.camera->id : std::string();
}

namespace DShowLib {

using virtual_cameras::alive;
using virtual_cameras::Camera;
using virtual_cameras::CCall;
using virtual_cameras::CGrabberCall;
using virtual_cameras::CWorldLock;
using virtual_cameras::GrabberState;
using virtual_cameras::Session;

namespace {

Grabber::Implementation* startedGrabber(Grabber& owner) {
    CCall call("Grabber::Grabber", virtual_cameras::NoCamera());
    if (!virtual_cameras::libraryIsReady()) {
        virtual_cameras::countMisuse("Grabber::Grabber: the library is not initialised.");
    }
    auto* inside = new Grabber::Implementation;
    inside->state.owner = &owner;
    alive().grabbers.fetch_add(1, std::memory_order_relaxed);
    call.returns();
    return inside;
}

}  // namespace

Grabber::Grabber() : m_implementation(startedGrabber(*this)) {}

Grabber::~Grabber() {
    const bool recorded = virtual_cameras::callLog().isOn();
    const std::string camera = recorded ? m_implementation->cameraName() : std::string();
    {
        CWorldLock world;
        GrabberState& state = m_implementation->state;
        const std::shared_ptr<Session> session = state.session;
        closeDevice(world, state);
        while (*state.tellingLoss > 0 && state.lossThread != ::GetCurrentThreadId()) {
            world.wait(virtual_cameras::CMonitor::forEver);
        }
        // Only when a listener destroys the grabber that called it.
        if (session && session->thread.joinable()) {
            session->grabber = nullptr;
            session->thread.detach();
            auto& sessions = world->sessions;
            sessions.erase(std::remove(sessions.begin(), sessions.end(), session), sessions.end());
        }
        alive().listeners.fetch_sub(static_cast<std::uint32_t>(state.listeners.size()),
                                    std::memory_order_relaxed);
    }
    delete m_implementation;
    alive().grabbers.fetch_sub(1, std::memory_order_relaxed);
    if (recorded) {
        virtual_cameras::callLog().add(camera, "Grabber::~Grabber", {}, {});
    }
}

Grabber::tVidCapDevListPtr Grabber::getAvailableVideoCaptureDevices_() const {
    CGrabberCall call("Grabber::getAvailableVideoCaptureDevices_", *m_implementation);
    return call.lists<dvector<VideoCaptureDeviceItem>>([&](CWorldLock& world) {
        tVidCapDevListPtr list(new dvector<VideoCaptureDeviceItem>);
        for (const std::shared_ptr<Camera>& camera : world->cameras) {
            if (camera->plugged) {
                list->push_back(virtual_cameras::deviceItem(camera));
            }
        }
        return list;
    });
}

bool Grabber::openDev(const VideoCaptureDeviceItem& device) {
    const std::shared_ptr<Camera>& camera = device.implementation()->camera;
    CGrabberCall call("Grabber::openDev", *m_implementation, device.implementation()->name);
    if (call.isRecorded()) {
        call.isAbout(device.implementation()->cameraName());
    }
    GrabberState& state = m_implementation->state;
    char* thrown = nullptr;
    const bool opened = [&] {
        CWorldLock world;
        if (!call.mayGoOn(world)) {
            return false;
        }
        if (virtual_cameras::isLive(world, state)) {
            return call.refusesMisuse(virtual_cameras::refusal::live);
        }
        closeDevice(world, state);
        if (!camera || !camera->attached) {
            return call.refusesMisuse("There is no such video capture device.");
        }
        if (!camera->plugged) {
            return call.refuses(virtual_cameras::refusal::notConnected);
        }
        if (camera->rig.open == virtual_cameras::OpenBehaviour::throws) {
            thrown = virtual_cameras::faults().keep(camera->rig.openText);
            return false;
        }
        if (camera->rig.open == virtual_cameras::OpenBehaviour::fails) {
            return call.refuses(camera->rig.openText.c_str());
        }
        if (camera->rig.exclusive && !camera->grabbers.empty()) {
            return call.refuses("The video capture device is in use.");
        }
        state.camera = camera;
        camera->grabbers.push_back(&state);
        camera->updateProperties(world);
        if (state.sink) {
            virtual_cameras::connectSink(world, *state.sink->implementation(), *camera);
        }
        return true;
    }();
    if (thrown != nullptr) {
        call.throwText(thrown);
    }
    return call.returns(opened);
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

bool Grabber::startLive(bool showWindow) {
    CGrabberCall call("Grabber::startLive", *m_implementation, showWindow);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (isDeliveryThread(world)) {
            return call.refusesMisuse("Live video cannot be started by a listener.");
        }
        if (const std::shared_ptr<Session> session = state.session; session && session->stopping) {
            endSession(world, session);
        }
        if (!call.hasDevice(world)) {
            return false;
        }
        if (state.camera->live) {
            return virtual_cameras::isLive(world, state)
                       ? call.refusesMisuse("Live video is running already.")
                       : call.refuses("The video capture device is in use.");
        }
        if (!state.sink) {
            return call.refusesMisuse("There is no frame sink.");
        }
        if (state.camera->currentFormat() == nullptr) {
            return call.refuses("The video capture device offers no video format.");
        }
        auto& sink = *state.sink->implementation();
        const auto shape = shapeFor(world, sink, *state.camera);
        if (!connectSink(world, sink, *state.camera) || !shape) {
            return call.refuses("The frame sink takes none of the device's frames.");
        }
        startSession(world, state, *shape);
        return true;
    });
}

bool Grabber::stopLive() {
    CGrabberCall call("Grabber::stopLive", *m_implementation);
    return call.tries([&](CWorldLock& world) {
        const std::shared_ptr<Session> session = m_implementation->state.session;
        if (!session) {
            return call.refuses("Live video is not running.");
        }
        endSession(world, session);
        return true;
    });
}

bool Grabber::isLive() const {
    CGrabberCall call("Grabber::isLive", *m_implementation);
    return call.tries(
        [&](CWorldLock& world) { return virtual_cameras::isLive(world, m_implementation->state); });
}

Error Grabber::getLastError() const {
    CCall call("Grabber::getLastError", *m_implementation);
    CWorldLock world;
    const std::string text = call.fails() ? std::string() : m_implementation->state.lastError;
    return call.returnsAs(text, virtual_cameras::errorItem(text));
}

bool Grabber::setSinkType(const smart_ptr<GrabberSinkType>& sink) {
    CGrabberCall call("Grabber::setSinkType", *m_implementation, sink ? "sink" : "null");
    // Goes after the lock: the last handle to a sink frees its buffers.
    smart_ptr<GrabberSinkType> before;
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        // Live video goes on into the sink that it was started with.
        if (virtual_cameras::isLive(world, state)) {
            return call.refuses(virtual_cameras::refusal::live);
        }
        before = state.sink;
        if (before) {
            before->implementation()->connected = false;
        }
        state.sink = sink;
        if (sink && state.camera) {
            connectSink(world, *sink->implementation(), *state.camera);
        }
        return true;
    });
}

}  // namespace DShowLib
