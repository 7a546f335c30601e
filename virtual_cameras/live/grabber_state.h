// SPDX-License-Identifier: MIT
// The inside of a grabber.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "capture/library/grabber.h"
#include "virtual_cameras/live/camera.h"
#include "virtual_cameras/live/sink.h"

namespace virtual_cameras {

struct Listener {
    DShowLib::GrabberListener* listener;
    ULONG events;
};

// Which events a listener asked for.
inline constexpr ULONG eventFrameReady = 1;
inline constexpr ULONG eventFrameDropped = 2;
inline constexpr ULONG eventOverlay = 4;
inline constexpr ULONG eventDeviceLost = 8;

// Read and written under the world's lock only.
struct GrabberState {
    DShowLib::Grabber* owner = nullptr;
    std::shared_ptr<Camera> camera;  // open, if perhaps unplugged
    bool lost = false;               // unplugged while open; ends with the next open or close
    DShowLib::smart_ptr<DShowLib::GrabberSinkType> sink;
    std::shared_ptr<Session> session;  // live, or not yet over
    std::string lastError;
    std::vector<Listener> listeners;
    ULONG overlayPaths = ~ULONG{0};
    // While a loss is told outside live video: who tells it.
    std::shared_ptr<std::uint32_t> tellingLoss = std::make_shared<std::uint32_t>(0);
    DWORD lossThread = 0;
};

bool isLive(CWorldLock& world, const GrabberState& grabber);
bool isDeviceValid(CWorldLock& world, const GrabberState& grabber);
// Ends live video and lets the device go. Afterwards the sink is not connected.
void closeDevice(CWorldLock& world, GrabberState& grabber);
// Tells that the device of a grabber that is not live is gone.
void tellLoss(CWorldLock& world, GrabberState& grabber);

// Takes a camera away from whoever has it open, and brings it back.
void unplugCamera(CWorldLock& world, const std::shared_ptr<Camera>& camera);
void plugCamera(CWorldLock& world, Camera& camera);

}  // namespace virtual_cameras

struct DShowLib::Grabber::Implementation {
    virtual_cameras::GrabberState state;

    // For the call log. Takes the world's lock.
    std::string cameraName() const;
};
