// SPDX-License-Identifier: MIT
// The inside of a grabber: the device that it has open, and where frames go.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "capture/library/grabber.h"
#include "virtual_cameras/live/camera.h"
#include "virtual_cameras/live/listeners.h"
#include "virtual_cameras/live/sink.h"

namespace virtual_cameras {

// Read and written under the world's lock only.
struct GrabberState {
    DShowLib::Grabber* owner = nullptr;
    std::shared_ptr<Camera> camera;  // open, if perhaps unplugged
    bool lost = false;               // unplugged while open; ends with the next open or close
    DShowLib::smart_ptr<DShowLib::GrabberSinkType> sink;
    std::shared_ptr<CDeliverySession> session;  // live, or not yet over
    std::string lastError;
    std::vector<Listener> listeners;
    ULONG overlayPaths = ~ULONG{0};
    // While a loss is told outside live video: how many tell it, and the last of them.
    std::shared_ptr<std::uint32_t> tellingLoss = std::make_shared<std::uint32_t>(0);
    DWORD lossThread = 0;
};

bool isLive(CWorldLock& world, const GrabberState& grabber);
bool isDeviceValid(CWorldLock& world, const GrabberState& grabber);
// Connects the sink, where there is one.
void openDevice(CWorldLock& world, GrabberState& grabber, const std::shared_ptr<Camera>& camera);
// Ends live video and lets the device go. Afterwards the sink is not connected.
void closeDevice(CWorldLock& world, GrabberState& grabber);

}  // namespace virtual_cameras

struct DShowLib::Grabber::Implementation {
    virtual_cameras::GrabberState state;

    // For the call log. Takes the world's lock.
    std::string cameraName() const;
};
