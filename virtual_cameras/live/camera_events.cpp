// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/camera_events.h"

#include <algorithm>

#include "virtual_cameras/calls/faults.h"
#include "virtual_cameras/live/camera_list.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/live/device_loss.h"

namespace virtual_cameras {

namespace {

void plugIn(CWorldLock& world, const std::shared_ptr<Camera>& camera, const RigPlug& plug) {
    if (camera->plugged) {
        return;
    }
    std::shared_ptr<Camera> coming = camera;
    if (plug.serial && plug.serial != camera->rig.serial) {
        coming = cameraList().exchange(world, camera, *plug.serial);
    }
    cameraList().move(world, coming, plug.place);
    if (!plug.format.empty()) {
        coming->chooseFormatCalled(plug.format);
    }
    plugCamera(world, *coming);
}

void slowDown(CWorldLock& world, Camera& camera, double framesPerSecond) {
    camera.trouble.slowedTo = framesPerSecond;
    if (camera.live) {
        camera.live->schedule(world).setRate(world, camera.deliveryRate());
        world.wakeAll();
    }
}

std::uint32_t fireTrigger(CWorldLock& world, const Camera& camera) {
    const std::shared_ptr<CDeliverySession> session = camera.live;
    if (!session || !session->waitsForTrigger(world)) {
        return 0;
    }
    if (deliveries().areCallingListeners(world)) {
        session->deliverSoon(world);
        return 0;
    }
    return session->deliverNow(world) ? 1 : 0;
}

// What each kind of event does when it starts: the number of frames that it delivered.
struct Start {
    CWorldLock& world;
    const std::shared_ptr<Camera>& camera;
    const RigEvent& event;

    std::uint32_t operator()(const RigUnplug&) const {
        unplugCamera(world, camera);
        return 0;
    }
    std::uint32_t operator()(const RigPlug& plug) const {
        plugIn(world, camera, plug);
        return 0;
    }
    std::uint32_t operator()(const RigStall&) const {
        (event.lasts > 0 ? camera->trouble.stalled : camera->trouble.hung) = true;
        return 0;
    }
    std::uint32_t operator()(const RigDrop& drop) const {
        camera->trouble.drops += drop.frames;
        return 0;
    }
    std::uint32_t operator()(const RigSlow& slow) const {
        slowDown(world, *camera, slow.framesPerSecond);
        return 0;
    }
    std::uint32_t operator()(const RigFail&) const {
        camera->events->arm(event);
        return 0;
    }
    std::uint32_t operator()(const RigTrigger&) const { return fireTrigger(world, *camera); }
    std::uint32_t operator()(const RigChange& change) const {
        camera->properties->change(world, change);
        return 0;
    }
};

// What the kinds that last do when their time is over.
struct End {
    CWorldLock& world;
    const std::shared_ptr<Camera>& camera;

    void operator()(const RigUnplug& unplug) const { plugIn(world, camera, unplug.back); }
    void operator()(const RigStall&) const {
        camera->trouble.stalled = false;
        if (camera->live) {
            camera->live->schedule(world).restart(world);
            world.wakeAll();
        }
    }
    void operator()(const RigSlow&) const { slowDown(world, *camera, 0.0); }
    template <class Action>
    void operator()(const Action&) const {}
};

// The lock may be let go, and the camera be replaced.
std::uint32_t perform(CWorldLock& world, const std::shared_ptr<Camera>& camera,
                      const EventTurn& turn) {
    const std::shared_ptr<CEventSchedule> keptAlive = camera->events;
    if (!turn.isEnd) {
        return std::visit(Start{world, camera, *turn.event}, turn.event->action);
    }
    std::visit(End{world, camera}, turn.event->action);
    return 0;
}

void performStarted(CWorldLock& world, const std::shared_ptr<Camera>& camera) {
    while (const auto turn = camera->events->takeStarted(deliveries().clock(world).rigTime())) {
        perform(world, camera, *turn);
    }
}

// The camera whose event comes first; null when there is none.
std::shared_ptr<Camera> cameraOfNextEvent(CWorldLock& world) {
    std::shared_ptr<Camera> first;
    for (const std::shared_ptr<Camera>& camera : cameraList().all(world)) {
        const auto time = camera->events->nextTime();
        if (time && (!first || *time < *first->events->nextTime())) {
            first = camera;
        }
    }
    return first;
}

Fault faultOf(const RigFail& fail) {
    const auto kind = [&] {
        switch (fail.how) {
            case FailBehaviour::answersCode:
                return VIRTUAL_CAMERAS_FAIL_CODE;
            case FailBehaviour::throws:
                return VIRTUAL_CAMERAS_FAIL_THROW;
            case FailBehaviour::answersEmpty:
                return VIRTUAL_CAMERAS_FAIL_EMPTY;
            case FailBehaviour::answersFalse:
                break;
        }
        return VIRTUAL_CAMERAS_FAIL_FALSE;
    };
    return {kind(), fail.code, faults().keep(fail.text)};
}

void performAllDue(CWorldLock& world) {
    while (const std::shared_ptr<Camera> camera = cameraOfNextEvent(world)) {
        if (!performDueEvents(world, camera)) {
            return;
        }
    }
}

bool isConcerned(CWorldLock& world, std::string_view operation) {
    const auto& cameras = cameraList().all(world);
    return std::any_of(cameras.begin(), cameras.end(),
                       [&](const auto& camera) { return camera->events->concerns(operation); });
}

// Counts the call for those that it is about, and does what starts with it.
void countCall(CWorldLock& world, std::string_view operation, std::string_view name) {
    const auto isAbout = [&](const Camera& camera) { return name.empty() || camera.id == name; };
    for (const std::shared_ptr<Camera>& camera : cameraList().all(world)) {
        if (isAbout(*camera)) {
            camera->events->countCall(operation);
        }
    }
    // The list may change on the way.
    for (std::size_t i = 0; i < cameraList().all(world).size(); ++i) {
        performStarted(world, std::shared_ptr<Camera>(cameraList().all(world)[i]));
    }
}

const RigFail* takeFailure(CWorldLock& world, std::string_view operation, std::string_view name) {
    for (const std::shared_ptr<Camera>& camera : cameraList().all(world)) {
        const bool isAbout = name.empty() || camera->id == name;
        if (const RigFail* fail = isAbout ? camera->events->takeFailure(operation) : nullptr) {
            return fail;
        }
    }
    return nullptr;
}

std::optional<Fault> watchCall(std::string_view operation, const CallSubject& subject) {
    {
        CWorldLock world;
        performAllDue(world);
        if (!isConcerned(world, operation)) {
            return std::nullopt;
        }
    }
    const std::string name = subject.cameraName();
    CWorldLock world;
    countCall(world, operation, name);
    const RigFail* fail = takeFailure(world, operation, name);
    return fail != nullptr ? std::optional(faultOf(*fail)) : std::nullopt;
}

}  // namespace

void startEvents(CWorldLock& world) {
    const auto& cameras = cameraList().all(world);
    const bool any = std::any_of(cameras.begin(), cameras.end(),
                                 [](const auto& camera) { return !camera->events->isEmpty(); });
    faults().setWatch(any ? watchCall : nullptr);
    while (nextEventTime(world) == std::uint64_t{0}) {
        performNextEvent(world, 0);
    }
}

void beforeFrame(CWorldLock& world, const std::shared_ptr<Camera>& camera) {
    camera->events->beforeFrame();
    performStarted(world, camera);
}

bool performDueEvents(CWorldLock& world, const std::shared_ptr<Camera>& camera) {
    const DeliveryClock& clock = deliveries().clock(world);
    const auto turn = camera->events->isEmpty() || clock.isStepped()
                          ? std::nullopt
                          : camera->events->takeDue(clock.rigTime());
    if (turn) {
        perform(world, camera, *turn);
    }
    return turn.has_value();
}

std::uint32_t millisecondsToEvent(CWorldLock& world, const Camera& camera) {
    const DeliveryClock& clock = deliveries().clock(world);
    const auto time = clock.isStepped() ? std::nullopt : camera.events->nextTime();
    if (!time) {
        return CMonitor::forEver;
    }
    const std::uint64_t now = clock.rigTime();
    constexpr std::uint64_t nanoseconds = 1'000'000;
    constexpr std::uint64_t longest = 1'000'000;
    const std::uint64_t left = *time > now ? (*time - now) / nanoseconds + 1 : 1;
    return static_cast<std::uint32_t>(std::min(left, longest));
}

std::optional<std::uint64_t> nextEventTime(CWorldLock& world) {
    const std::shared_ptr<Camera> camera = cameraOfNextEvent(world);
    return camera ? camera->events->nextTime() : std::nullopt;
}

std::uint32_t performNextEvent(CWorldLock& world, std::uint64_t until) {
    const std::shared_ptr<Camera> camera = cameraOfNextEvent(world);
    const auto turn = camera ? camera->events->takeDue(until) : std::nullopt;
    return turn ? perform(world, camera, *turn) : 0;
}

}  // namespace virtual_cameras
