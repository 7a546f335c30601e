// SPDX-License-Identifier: MIT
// The cameras that there are, in the order of their rig.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "virtual_cameras/live/camera.h"

namespace virtual_cameras {

// Empty at first. Read and written under the world's lock only.
class CCameraList {
public:
    const std::vector<std::shared_ptr<Camera>>& all(CWorldLock&) const noexcept {
        return m_cameras;
    }
    // By its serial text or name; null when there is none.
    std::shared_ptr<Camera> find(CWorldLock& world, std::string_view id) const;
    // Takes all cameras away, which ends live video and tells listeners, and puts
    // those of the rig in their place.
    void replace(CWorldLock& world, const Rig& rig);

    // Puts another device of the same model in its place, not plugged in, and with the
    // rest of its events. The camera itself when it is not of the list.
    std::shared_ptr<Camera> exchange(CWorldLock& world, const std::shared_ptr<Camera>& camera,
                                     std::int64_t serial);
    // From 1.
    void move(CWorldLock& world, const std::shared_ptr<Camera>& camera, std::size_t place);

private:
    std::vector<std::shared_ptr<Camera>> m_exchanged;  // no longer listed
    std::vector<std::shared_ptr<Camera>> m_cameras;
};

CCameraList& cameraList();

}  // namespace virtual_cameras
