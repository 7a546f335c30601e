// SPDX-License-Identifier: MIT
// One stretch of live video: a camera, the grabber that it delivers to, and the
// thread that does it. Started, ended and kept by the deliveries.
#pragma once

#include <memory>
#include <thread>

#include "virtual_cameras/live/frame_delivery.h"
#include "virtual_cameras/live/frame_requests.h"
#include "virtual_cameras/live/frame_schedule.h"
#include "virtual_cameras/live/grabber_state.h"

namespace virtual_cameras {

class CDeliverySession {
public:
    // The grabber has a device open, and a connected sink.
    CDeliverySession(CWorldLock& world, GrabberState& grabber, const PictureShape& shape,
                     const DeliveryClock& clock);
    CDeliverySession(const CDeliverySession&) = delete;
    CDeliverySession& operator=(const CDeliverySession&) = delete;

    const Camera& camera() const noexcept { return *m_camera; }
    // Null once it is gone.
    const GrabberState* grabber(CWorldLock&) const noexcept { return m_grabber; }
    CFrameSchedule& schedule(CWorldLock&) noexcept { return m_schedule; }
    bool isStopping(CWorldLock&) const noexcept { return m_stopping; }
    bool waitsForTrigger(CWorldLock& world) const;
    // Whether frames do not come by themselves.
    bool isHeld(CWorldLock& world) const;
    // Whether the caller is the session's own thread, which cannot wait for itself.
    bool isOwnThread(CWorldLock&) const noexcept;
    // As isOwnThread, while listeners may still be called.
    bool isCallingListeners(CWorldLock& world) const noexcept;

    // The thread holds the session for as long as it runs.
    static void start(CWorldLock& world, const std::shared_ptr<CDeliverySession>& session);
    // One frame now, or the loss of the camera that it meets. False when all buffers are locked, or
    // live video ends first.
    bool deliverNow(CWorldLock& world);
    // As deliverNow, for delivery threads: returns before the frame is there.
    void deliverSoon(CWorldLock& world) noexcept;
    // A loss that ended the session on a delivery thread, and is not told yet.
    bool hasUntoldLoss(CWorldLock&) const noexcept { return m_lost && !m_finished; }
    // Not on a delivery thread.
    void waitUntilLossIsTold(CWorldLock& world) const;
    // The listeners are to be told at the end.
    void markLost(CWorldLock&) noexcept { m_lost = true; }
    // No frame begins any more, and the camera is free.
    void stop(CWorldLock& world);
    // Returns when the thread has ended; true for the one caller who ended it.
    bool join(CWorldLock& world);
    // The grabber has no session any more, if this was its.
    void leaveGrabber(CWorldLock& world);
    // The grabber is destroyed, and nobody is told anything any more. True when a
    // listener does that and nobody joins the thread, which then ends by itself.
    bool abandon(CWorldLock& world);

private:
    void run();
    bool deliver(CWorldLock& world);
    // How long the thread may sleep; 0: a frame is due.
    std::uint32_t millisecondsToNext(CWorldLock& world);

    const std::shared_ptr<Camera> m_camera;
    std::thread m_thread;

    // Under the world's lock.
    GrabberState* m_grabber;
    CFrameSchedule m_schedule;
    CFrameRequests m_requests;
    std::uint32_t m_soon = 0;  // frames that nobody waits for
    DWORD m_threadId = 0;
    bool m_stopping = false;
    bool m_lost = false;
    bool m_finished = false;  // no listener is called any more
    bool m_joined = false;

    // Of the delivery thread.
    CFrameDelivery m_delivery;
};

}  // namespace virtual_cameras
