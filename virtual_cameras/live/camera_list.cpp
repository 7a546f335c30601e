// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/camera_list.h"

#include <utility>

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
    const std::vector<std::shared_ptr<Camera>> before = m_cameras;
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
}

CCameraList& cameraList() {
    // Never destroyed: threads may still call while the process ends.
    static CCameraList& instance = *new CCameraList;
    return instance;
}

}  // namespace virtual_cameras
