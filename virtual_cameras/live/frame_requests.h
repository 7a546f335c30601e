// SPDX-License-Identifier: MIT
// Frames that somebody waits for, whatever the clock says. Asked for by any thread but
// a delivery thread, served by the session's own in the order of asking.
#pragma once

#include "virtual_cameras/calls/world_lock.h"

namespace virtual_cameras {

class CFrameRequests {
public:
    bool isEmpty(CWorldLock&) const noexcept { return m_first == nullptr; }

    // Returns when the frame has been served or refused; true when it was delivered.
    bool ask(CWorldLock& world);

    // `deliver` may let go of the lock, and tells whether the frame was delivered.
    template <class Deliver>
    void serveFirst(CWorldLock& world, Deliver&& deliver) {
        Request& request = *m_first;
        m_first = request.next;
        request.delivered = deliver();
        request.done = true;
        world.wakeAll();
    }
    // Who asked wakes as soon as the lock is free.
    void refuseAll(CWorldLock& world);

private:
    // On the stack of whoever asked.
    struct Request {
        Request* next = nullptr;
        bool done = false;
        bool delivered = false;
    };

    Request* m_first = nullptr;
};

}  // namespace virtual_cameras
