// SPDX-License-Identifier: MIT
// The grabber's sink and its live video.
#include "virtual_cameras/grabber/grabber_call.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/live/sink.h"

namespace DShowLib {

using virtual_cameras::CDeliverySession;
using virtual_cameras::CGrabberCall;
using virtual_cameras::CWorldLock;
using virtual_cameras::deliveries;
using virtual_cameras::GrabberState;

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

bool Grabber::startLive(bool showWindow) {
    CGrabberCall call("Grabber::startLive", *m_implementation, showWindow);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (deliveries().areCallingListeners(world)) {
            return call.refusesMisuse("Live video cannot be started by a listener.");
        }
        if (const std::shared_ptr<CDeliverySession> session = state.session;
            session && session->isStopping(world)) {
            deliveries().end(world, session);
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
        deliveries().start(world, state, *shape);
        return true;
    });
}

bool Grabber::stopLive() {
    CGrabberCall call("Grabber::stopLive", *m_implementation);
    return call.tries([&](CWorldLock& world) {
        const std::shared_ptr<CDeliverySession> session = m_implementation->state.session;
        if (!session) {
            return call.refuses("Live video is not running.");
        }
        deliveries().end(world, session);
        return true;
    });
}

bool Grabber::isLive() const {
    CGrabberCall call("Grabber::isLive", *m_implementation);
    return call.tries(
        [&](CWorldLock& world) { return virtual_cameras::isLive(world, m_implementation->state); });
}

}  // namespace DShowLib
