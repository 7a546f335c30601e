// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/frame_requests.h"

namespace virtual_cameras {

bool CFrameRequests::ask(CWorldLock& world) {
    Request request;
    Request** last = &m_first;
    while (*last != nullptr) {
        last = &(*last)->next;
    }
    *last = &request;
    world.wakeAll();
    while (!request.done) {
        world.wait(CMonitor::forEver);
    }
    return request.delivered;
}

void CFrameRequests::refuseAll(CWorldLock& world) {
    for (; m_first != nullptr; m_first = m_first->next) {
        m_first->done = true;
    }
    world.wakeAll();
}

}  // namespace virtual_cameras
