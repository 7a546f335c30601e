// SPDX-License-Identifier: MIT
// One stretch of live video: the delivery thread, and the clock that drives it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "virtual_cameras/live/buffers.h"
#include "virtual_cameras/live/grabber_state.h"
#include "virtual_cameras/scenes/renderer.h"

namespace virtual_cameras {

// A frame that somebody waits for.
struct FrameRequest {
    FrameRequest* next = nullptr;
    bool done = false;
    bool delivered = false;
};

// Under the world's lock, apart from what the delivery thread alone uses.
struct Session {
    using Time = std::chrono::steady_clock::time_point;

    Session(std::shared_ptr<Camera> of, GrabberState& by, const PictureShape& shape);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const std::string& cameraName() const noexcept { return camera->id; }

    const std::shared_ptr<Camera> camera;
    GrabberState* grabber;  // null once it is gone
    const DShowLib::smart_ptr<DShowLib::GrabberSinkType> sink;
    const DShowLib::smart_ptr<DShowLib::MemBufferCollection> ring;
    const std::chrono::nanoseconds period;

    bool stopping = false;
    bool lost = false;
    bool finished = false;  // no listener is called any more
    bool joined = false;
    std::thread thread;
    DWORD threadId = 0;
    std::uint32_t frame = 0;
    FrameRequest* requests = nullptr;
    std::uint64_t nextStep = 0;  // stepped clock, nanoseconds
    Time nextTime;               // real clock

    // Of the delivery thread.
    CRenderer renderer;
    std::uint64_t toneVersion = 0;
    std::vector<Listener> listeners;
};

// The camera must be open and the sink connected.
void startSession(CWorldLock& world, GrabberState& grabber, const PictureShape& shape);
// Returns when no listener is called any more, but on the delivery thread itself
// returns at once: the session then ends when the listener has returned.
void endSession(CWorldLock& world, const std::shared_ptr<Session>& session);
// True on the delivery thread of any session.
bool isDeliveryThread(CWorldLock& world);

// One frame now. False when all buffers are locked, or live video ends first.
bool deliverNow(CWorldLock& world, const std::shared_ptr<Session>& session);
// Delivers what falls due within a time of the stepped clock.
std::uint32_t stepClock(CWorldLock& world, std::uint64_t nanoseconds);
void setClock(CWorldLock& world, std::int32_t mode);

}  // namespace virtual_cameras
