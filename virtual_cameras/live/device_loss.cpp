// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/device_loss.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "virtual_cameras/live/deliveries.h"

namespace virtual_cameras {

namespace {

// Those who did not know yet.
std::vector<GrabberState*> loseOpeners(Camera& camera) {
    std::vector<GrabberState*> untold;
    for (GrabberState* opener : camera.grabbers) {
        if (!std::exchange(opener->lost, true)) {
            untold.push_back(opener);
        }
    }
    return untold;
}

bool isOpener(const Camera& camera, const GrabberState* grabber) {
    const auto& openers = camera.grabbers;
    return std::find(openers.begin(), openers.end(), grabber) != openers.end();
}

// A grabber that is not live has no delivery thread, so it is told on a thread made
// for that. The listener may destroy the grabber.
void tellLoss(CWorldLock& world, GrabberState& grabber) {
    const std::shared_ptr<std::uint32_t> telling = grabber.tellingLoss;
    const std::vector<Listener> listeners = grabber.listeners;
    const std::string camera = grabber.camera->id;
    DShowLib::Grabber& owner = *grabber.owner;
    const auto tell = [&] {
        {
            const CWorldLock inside;
            grabber.lossThread = ::GetCurrentThreadId();
        }
        tellDeviceLost(listeners, owner, camera);
    };
    ++*telling;
    world.whileUnlocked([&] { std::thread(tell).join(); });
    --*telling;
    world.wakeAll();
}

}  // namespace

void unplugCamera(CWorldLock& world, const std::shared_ptr<Camera>& camera) {
    if (!camera->plugged) {
        return;
    }
    camera->plugged = false;
    std::vector<GrabberState*> untold = loseOpeners(*camera);
    camera->updateProperties(world);
    // The delivery thread tells the grabber that is live.
    if (const std::shared_ptr<CDeliverySession> session = camera->live) {
        untold.erase(std::remove(untold.begin(), untold.end(), session->grabber(world)),
                     untold.end());
        deliveries().lose(world, session);
    }
    for (GrabberState* grabber : untold) {
        if (isOpener(*camera, grabber)) {
            tellLoss(world, *grabber);
        }
    }
}

void plugCamera(CWorldLock& world, Camera& camera) {
    if (camera.plugged) {
        return;
    }
    camera.plugged = true;
    camera.trouble = {};
    camera.properties->powerUp(world);
    camera.updateProperties(world);
}

void waitUntilLossIsTold(CWorldLock& world, const GrabberState& grabber) {
    while (*grabber.tellingLoss > 0 && grabber.lossThread != ::GetCurrentThreadId()) {
        world.wait(CMonitor::forEver);
    }
}

}  // namespace virtual_cameras
