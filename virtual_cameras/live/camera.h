// SPDX-License-Identifier: MIT
// One virtual camera: its description, and what it is set to now.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/events/event_schedule.h"
#include "virtual_cameras/properties/property_tree.h"
#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

class CDeliverySession;
struct GrabberState;

// What events have done to a camera, until it is plugged in anew.
struct CameraTrouble {
    bool stalled = false;     // gives no frames
    bool hung = false;        // as stalled, until live video starts again
    std::uint32_t drops = 0;  // frames
    double slowedTo = 0.0;    // frames per second; 0: not slowed

    bool holdsFrames() const noexcept { return stalled || hung; }
};

// What is not const is read and written under the world's lock only.
struct Camera {
    explicit Camera(const RigCamera& description);
    // Instead of another, whose events go on.
    Camera(const RigCamera& description, std::shared_ptr<CEventSchedule> goingOn);
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;
    ~Camera();

    const RigCamera rig;
    const std::string id;

    bool attached = true;  // false: its rig has been replaced
    bool plugged = true;
    std::size_t norm = 0;
    std::optional<std::size_t> format;  // in the list of the norm
    std::size_t channel = 0;
    double frameRate = 0.0;
    std::vector<GrabberState*> grabbers;  // that have it open
    std::shared_ptr<CDeliverySession> live;
    CameraTrouble trouble;
    const std::shared_ptr<CEventSchedule> events;
    CPropertyTree* const properties;  // one reference of our own

    std::string cameraName() const { return id; }
    bool hasNorms() const { return rig.norms && !rig.norms->empty(); }
    // Missing and empty are two things.
    const std::optional<std::vector<RigFormat>>& formatsOf(std::size_t normIndex) const;
    // Null while no format is chosen, which only a norm without formats brings about.
    const RigFormat* currentFormat() const;
    const std::optional<std::vector<double>>& ratesOf(const RigFormat& of) const;

    void chooseNorm(std::size_t index);
    void chooseFormat(std::size_t index);
    // By its name; the first norm that offers it. False when none does.
    bool chooseFormatCalled(std::string_view name);
    // False when the device has no rates to choose from.
    bool chooseFrameRate(double framesPerSecond);
    // At which frames come: the chosen rate, unless something slows the camera.
    double deliveryRate() const;

    // After a change of who has the device open, or of its presence.
    void updateProperties(CWorldLock& world) const;
};

}  // namespace virtual_cameras
