// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/session.h"

#include <algorithm>

#include "virtual_cameras/calls/call.h"

namespace virtual_cameras {

namespace {

constexpr std::chrono::nanoseconds periodOf(double framesPerSecond) {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(1e9 / framesPerSecond));
}

std::uint64_t stepsOf(const Session& session) {
    return static_cast<std::uint64_t>(session.period.count());
}

void record(const Session& session, const char* operation, const std::string& arguments) {
    callLog().add(session.cameraName(), operation, arguments, {});
}

// The next buffer of the ring that is not locked; null when all are.
DShowLib::MemBufferCollection::Implementation::Entry* nextBuffer(Session& session) {
    auto& buffers = insideOf(*session.ring)->buffers;
    SinkState& sink = *session.sink->implementation();
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        const std::size_t index = (sink.nextBuffer + i) % buffers.size();
        if (buffers[index].buffer->locks.load(std::memory_order_acquire) == 0) {
            sink.nextBuffer = static_cast<std::uint32_t>((index + 1) % buffers.size());
            return &buffers[index];
        }
    }
    return nullptr;
}

// What one delivery needs of the world, taken under its lock.
struct Delivery {
    DShowLib::Grabber* owner;
    DShowLib::MemBufferCollection::Implementation::Entry* entry;
    std::uint32_t frame;
    bool overlay;
    bool newTone;
    ToneSettings tone;
};

Delivery prepare(CWorldLock& world, Session& session) {
    Delivery delivery{session.grabber->owner,
                      nextBuffer(session),
                      ++session.frame,
                      session.grabber->overlayPaths != 0,
                      false,
                      {}};
    session.listeners = session.grabber->listeners;
    const std::uint64_t version = session.camera->properties->version(world);
    if (version != session.toneVersion) {
        session.toneVersion = version;
        delivery.newTone = true;
        delivery.tone = session.camera->properties->tone(world);
    }
    return delivery;
}

void tellDropped(Session& session, const Delivery& delivery) {
    for (const Listener& entry : session.listeners) {
        if ((entry.events & eventFrameDropped) != 0) {
            entry.listener->frameDropped(*delivery.owner,
                                         delivery.entry != nullptr
                                             ? delivery.entry->handle
                                             : DShowLib::smart_ptr<DShowLib::MemBuffer>(),
                                         delivery.frame);
        }
    }
    if (callLog().isOn()) {
        record(session, "GrabberListener::frameDropped", textOf(delivery.frame));
    }
}

void tellReady(Session& session, const Delivery& delivery) {
    for (const Listener& entry : session.listeners) {
        if (delivery.overlay && (entry.events & eventOverlay) != 0) {
            entry.listener->overlayCallback(*delivery.owner, delivery.entry->handle);
        }
        if ((entry.events & eventFrameReady) != 0) {
            entry.listener->frameReady(*delivery.owner, delivery.entry->handle, delivery.frame);
        }
    }
    if (callLog().isOn()) {
        record(session, "GrabberListener::frameReady",
               textOf(delivery.frame) + "," + textOf(delivery.entry->buffer->index));
    }
}

// Draws and tells, without the lock. True when the frame arrived.
bool carryOut(Session& session, const Delivery& delivery) {
    if (delivery.newTone) {
        session.renderer.setTone(delivery.tone);
    }
    if (delivery.entry == nullptr) {
        tellDropped(session, delivery);
        return false;
    }
    session.renderer.render(delivery.frame, delivery.entry->buffer->memory.get());
    if (faults().next("GrabberListener::frameReady")) {
        tellDropped(session, delivery);
        return false;
    }
    tellReady(session, delivery);
    return true;
}

bool deliver(CWorldLock& world, Session& session) {
    if (session.grabber == nullptr) {
        return false;
    }
    const Delivery delivery = prepare(world, session);
    bool delivered = false;
    world.whileUnlocked([&] { delivered = carryOut(session, delivery); });
    return delivered;
}

// How long the thread may sleep before the next frame; 0: it is due.
std::uint32_t millisecondsToNext(CWorldLock& world, Session& session) {
    if (world->clock == VIRTUAL_CAMERAS_CLOCK_STEPPED ||
        session.camera->properties->triggerIsOn(world)) {
        return CMonitor::forEver;
    }
    if (world->clock == VIRTUAL_CAMERAS_CLOCK_FAST) {
        return 0;
    }
    const auto now = std::chrono::steady_clock::now();
    if (session.nextTime > now) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(session.nextTime - now);
        return static_cast<std::uint32_t>(left.count());
    }
    // What could not be delivered in time is not made up for.
    session.nextTime = std::max(session.nextTime, now - session.period) + session.period;
    return 0;
}

void serveRequest(CWorldLock& world, Session& session) {
    FrameRequest* request = session.requests;
    session.requests = request->next;
    request->delivered = deliver(world, session);
    request->done = true;
    world.wakeAll();
}

void tellLost(CWorldLock& world, Session& session) {
    if (!session.lost || session.grabber == nullptr) {
        return;
    }
    session.listeners = session.grabber->listeners;
    DShowLib::Grabber& owner = *session.grabber->owner;
    world.whileUnlocked([&] {
        for (const Listener& entry : session.listeners) {
            if ((entry.events & eventDeviceLost) != 0) {
                entry.listener->deviceLost(owner);
            }
        }
        if (callLog().isOn()) {
            record(session, "GrabberListener::deviceLost", {});
        }
    });
}

void runDelivery(const std::shared_ptr<Session>& session) {
    CWorldLock world;
    session->threadId = ::GetCurrentThreadId();
    while (!session->stopping) {
        if (session->requests != nullptr) {
            serveRequest(world, *session);
            continue;
        }
        const std::uint32_t milliseconds = millisecondsToNext(world, *session);
        if (milliseconds == 0) {
            deliver(world, *session);
        } else {
            world.wait(milliseconds);
        }
    }
    tellLost(world, *session);
    for (; session->requests != nullptr; session->requests = session->requests->next) {
        session->requests->done = true;
    }
    session->finished = true;
    world.wakeAll();
}

void forget(CWorldLock& world, const std::shared_ptr<Session>& session) {
    auto& sessions = world->sessions;
    sessions.erase(std::remove(sessions.begin(), sessions.end(), session), sessions.end());
    if (session->grabber != nullptr && session->grabber->session == session) {
        session->grabber->session.reset();
    }
}

// The live session whose frame falls due first, up to a time.
std::shared_ptr<Session> firstDue(CWorldLock& world, std::uint64_t until) {
    std::shared_ptr<Session> first;
    for (const std::shared_ptr<Session>& session : world->sessions) {
        if (session->stopping || session->camera->properties->triggerIsOn(world)) {
            continue;
        }
        if (session->nextStep <= until && (!first || session->nextStep < first->nextStep)) {
            first = session;
        }
    }
    return first;
}

}  // namespace

Session::Session(std::shared_ptr<Camera> of, GrabberState& by, const PictureShape& shape)
    : camera(std::move(of)),
      grabber(&by),
      sink(by.sink),
      ring(by.sink->implementation()->ring),
      period(periodOf(camera->frameRate)),
      nextTime(std::chrono::steady_clock::now() + period),
      renderer(camera->rig.scene, shape) {}

void startSession(CWorldLock& world, GrabberState& grabber, const PictureShape& shape) {
    const auto session = std::make_shared<Session>(grabber.camera, grabber, shape);
    session->nextStep = world->steppedTime + stepsOf(*session);
    session->listeners.reserve(grabber.listeners.size());
    grabber.session = session;
    grabber.camera->live = session;
    world->sessions.push_back(session);
    session->thread = std::thread([session] { runDelivery(session); });
}

void endSession(CWorldLock& world, const std::shared_ptr<Session>& session) {
    session->stopping = true;
    if (session->camera->live == session) {
        session->camera->live.reset();
    }
    world.wakeAll();
    if (session->threadId == ::GetCurrentThreadId()) {
        return;
    }
    if (session->thread.joinable()) {
        std::thread ending = std::move(session->thread);
        world.whileUnlocked([&] { ending.join(); });
        session->joined = true;
        forget(world, session);
        world.wakeAll();
    }
    while (!session->joined) {
        world.wait(CMonitor::forEver);
    }
}

bool isDeliveryThread(CWorldLock& world) {
    const DWORD current = ::GetCurrentThreadId();
    const auto& sessions = world->sessions;
    return std::any_of(sessions.begin(), sessions.end(), [&](const auto& session) {
        return session->threadId == current && !session->finished;
    });
}

bool deliverNow(CWorldLock& world, const std::shared_ptr<Session>& session) {
    if (session->stopping || session->finished) {
        return false;
    }
    FrameRequest request;
    FrameRequest** last = &session->requests;
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

std::uint32_t stepClock(CWorldLock& world, std::uint64_t nanoseconds) {
    while (world->stepping) {
        world.wait(CMonitor::forEver);
    }
    world->stepping = true;
    const std::uint64_t until = world->steppedTime + nanoseconds;
    std::uint32_t delivered = 0;
    while (const std::shared_ptr<Session> session = firstDue(world, until)) {
        world->steppedTime = std::max(world->steppedTime, session->nextStep);
        session->nextStep += stepsOf(*session);
        if (deliverNow(world, session)) {
            ++delivered;
        }
    }
    world->steppedTime = until;
    // Who waited for a trigger starts counting when it runs free again.
    for (const std::shared_ptr<Session>& session : world->sessions) {
        if (session->nextStep <= until) {
            session->nextStep = until + stepsOf(*session);
        }
    }
    world->stepping = false;
    world.wakeAll();
    return delivered;
}

void setClock(CWorldLock& world, std::int32_t mode) {
    world->clock = mode;
    for (const std::shared_ptr<Session>& session : world->sessions) {
        session->nextStep = world->steppedTime + stepsOf(*session);
        session->nextTime = std::chrono::steady_clock::now() + session->period;
    }
    world.wakeAll();
}

}  // namespace virtual_cameras
