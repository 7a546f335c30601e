// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/camera_list.h"

#include <algorithm>
#include <utility>

#include "virtual_cameras/live/camera_events.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/live/device_loss.h"

namespace virtual_cameras {

std::shared_ptr<Camera> CCameraList::find(CWorldLock&, std::string_view id) const {
    for (const std::shared_ptr<Camera>& camera : m_cameras) {
        if (camera->id == id) {
            return camera;
        }
    }
    return nullptr;
}

void CCameraList::replace(CWorldLock& world, const Rig& rig) {
    // The lock is let go on the way.
    std::vector<std::shared_ptr<Camera>> before = m_cameras;
    before.insert(before.end(), m_exchanged.begin(), m_exchanged.end());
    m_exchanged.clear();
    for (const std::shared_ptr<Camera>& camera : before) {
        unplugCamera(world, camera);
        camera->attached = false;
        camera->properties->orphan(world);
    }
    std::vector<std::shared_ptr<Camera>> cameras;
    for (const RigCamera& camera : rig.cameras) {
        cameras.push_back(std::make_shared<Camera>(camera));
    }
    m_cameras = std::move(cameras);
    deliveries().startRig(world);
    startEvents(world);
}

std::shared_ptr<Camera> CCameraList::exchange(CWorldLock&, const std::shared_ptr<Camera>& camera,
                                              std::int64_t serial) {
    const auto found = std::find(m_cameras.begin(), m_cameras.end(), camera);
    if (found == m_cameras.end()) {
        return camera;
    }
    RigCamera description = camera->rig;
    description.serial = serial;
    m_exchanged.push_back(camera);
    *found = std::make_shared<Camera>(description, camera->events);
    (*found)->plugged = false;
    return *found;
}

void CCameraList::move(CWorldLock&, const std::shared_ptr<Camera>& camera, std::size_t place) {
    const auto found = std::find(m_cameras.begin(), m_cameras.end(), camera);
    if (found == m_cameras.end() || place == 0 || place > m_cameras.size()) {
        return;
    }
    const auto wanted = m_cameras.begin() + static_cast<std::ptrdiff_t>(place - 1);
    if (found < wanted) {
        std::rotate(found, found + 1, wanted + 1);
    } else {
        std::rotate(wanted, found, found + 1);
    }
}

CCameraList& cameraList() {
    // Never destroyed: threads may still call while the process ends.
    static CCameraList& instance = *new CCameraList;
    return instance;
}

}  // namespace virtual_cameras
