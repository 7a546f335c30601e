// SPDX-License-Identifier: MIT
// One virtual camera: its description, and what it is set to now.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/properties/property_tree.h"
#include "virtual_cameras/rig/rig.h"

namespace virtual_cameras {

class CDeliverySession;
struct GrabberState;

// What is not const is read and written under the world's lock only.
struct Camera {
    explicit Camera(const RigCamera& description);
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
    CPropertyTree* const properties;  // one reference of our own

    bool hasNorms() const { return rig.norms && !rig.norms->empty(); }
    // Missing and empty are two things.
    const std::optional<std::vector<RigFormat>>& formatsOf(std::size_t normIndex) const;
    // Null while no format is chosen, which only a norm without formats brings about.
    const RigFormat* currentFormat() const;
    const std::optional<std::vector<double>>& ratesOf(const RigFormat& of) const;

    void chooseNorm(std::size_t index);
    void chooseFormat(std::size_t index);
    // False when the device has no rates to choose from.
    bool chooseFrameRate(double framesPerSecond);

    // After a change of who has the device open, or of its presence.
    void updateProperties(CWorldLock& world) const;
};

}  // namespace virtual_cameras
