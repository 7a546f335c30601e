// SPDX-License-Identifier: MIT
#include "virtual_cameras/control.h"

#include <string>
#include <string_view>

#include "platform/text.h"
#include "virtual_cameras/calls/call_log.h"
#include "virtual_cameras/calls/faults.h"
#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/control/choices.h"
#include "virtual_cameras/live/buffers.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/live/device_loss.h"
#include "virtual_cameras/properties/property_objects.h"
#include "virtual_cameras/rig/rig_names.h"

using namespace virtual_cameras;

namespace {

int32_t takeRig(const std::variant<Rig, std::string>& rig, char* message, uint32_t messageSize) {
    const auto* wrong = std::get_if<std::string>(&rig);
    copyText(wrong != nullptr ? *wrong : std::string(), message, messageSize);
    if (wrong != nullptr) {
        return 1;
    }
    CWorldLock world;
    chooseRig(world, std::get<Rig>(rig));
    return 0;
}

// Null when there is none of that name.
std::shared_ptr<Camera> cameraCalled(CWorldLock& world, const char* name) {
    return presentCameras(world).find(world, textOrEmpty(name));
}

// The live session of a camera. Null on a delivery thread, which would wait for
// itself.
std::shared_ptr<CDeliverySession> sessionOf(CWorldLock& world, const char* camera) {
    if (deliveries().areCallingListeners(world)) {
        countMisuse("a listener asked for a frame");
        return nullptr;
    }
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    return found ? found->live : nullptr;
}

const CInterfaceNode* interfaceOf(const Camera& camera, const char* item, const char* element,
                                  const char* interfaceName) {
    return camera.properties->itemsObject().find(textOrEmpty(item), textOrEmpty(element),
                                                 textOrEmpty(interfaceName));
}

}  // namespace

void virtualCamerasReset(void) {
    callLog().clear();
    faults().clear();
    {
        CWorldLock world;
        forgetChoices(world);
        pageWork(world) = {};
    }
    pagesShown().store(0, std::memory_order_relaxed);
    setLibraryReady(false);
    clearMisuses();
}

int32_t virtualCamerasChooseRig(const char* name, char* message, uint32_t messageSize) {
    return takeRig(rigByName(textOrEmpty(name)), message, messageSize);
}

int32_t virtualCamerasLoadRig(const char* toml, char* message, uint32_t messageSize) {
    return takeRig(rigByText(textOrEmpty(toml)), message, messageSize);
}

int32_t virtualCamerasRigMistake(char* message, uint32_t messageSize) {
    CWorldLock world;
    const std::string mistake = rigMistake(world);
    copyText(mistake, message, messageSize);
    return mistake.empty() ? 0 : 1;
}

void virtualCamerasSetClock(int32_t mode) {
    CWorldLock world;
    chooseClock(world, mode);
}

uint32_t virtualCamerasStepClock(uint64_t nanoseconds) {
    CWorldLock world;
    if (deliveries().areCallingListeners(world)) {
        countMisuse("a listener stepped the clock");
        return 0;
    }
    return deliveries().step(world, nanoseconds);
}

int32_t virtualCamerasDeliverFrame(const char* camera) {
    CWorldLock world;
    const std::shared_ptr<CDeliverySession> session = sessionOf(world, camera);
    return session && session->deliverNow(world) ? 1 : 0;
}

int32_t virtualCamerasFireTrigger(const char* camera) {
    CWorldLock world;
    const std::shared_ptr<CDeliverySession> session = sessionOf(world, camera);
    return session && session->waitsForTrigger(world) && session->deliverNow(world) ? 1 : 0;
}

int32_t virtualCamerasUnplug(const char* camera) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    if (found) {
        unplugCamera(world, found);
    }
    return found ? 1 : 0;
}

int32_t virtualCamerasPlug(const char* camera) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    if (found) {
        plugCamera(world, *found);
    }
    return found ? 1 : 0;
}

void virtualCamerasFailCall(const char* operation, uint32_t nth, uint32_t count, int32_t kind,
                            int32_t code, const char* text) {
    faults().add(textOrEmpty(operation), nth, count, {kind, code, nullptr}, textOrEmpty(text));
}

void virtualCamerasClearFailures(void) {
    faults().clear();
}

int32_t virtualCamerasIsInsideCall(void) {
    return CCallDepth::isInside() ? 1 : 0;
}

void virtualCamerasRecordCalls(int32_t on) {
    callLog().record(on != 0);
}

uint64_t virtualCamerasCallCount(void) {
    return callLog().count();
}

int32_t virtualCamerasGetCall(uint64_t sequence, VirtualCamerasCall* call) {
    return call != nullptr && callLog().get(sequence, *call) ? 1 : 0;
}

int32_t virtualCamerasWaitForCall(const char* operation, uint64_t from,
                                  uint32_t deadlineMilliseconds, uint64_t* sequence) {
    uint64_t found = 0;
    const bool came = callLog().waitFor(textOrEmpty(operation), from, deadlineMilliseconds, found);
    if (came && sequence != nullptr) {
        *sequence = found;
    }
    return came ? 1 : 0;
}

int32_t virtualCamerasBufferLocks(const char* camera, uint32_t buffer) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    if (!found) {
        return -1;
    }
    for (const GrabberState* grabber : found->grabbers) {
        const auto* sink = grabber->sink ? grabber->sink->implementation() : nullptr;
        if (sink == nullptr || !sink->ring) {
            continue;
        }
        const auto& buffers = insideOf(*sink->ring)->buffers;
        return buffer < buffers.size() ? buffers[buffer].buffer->locks.load() : -1;
    }
    return -1;
}

uint32_t virtualCamerasMisuses(char* last, uint32_t lastSize) {
    return misuses(last, lastSize);
}

void virtualCamerasGetAlive(VirtualCamerasAlive* alive) {
    if (alive == nullptr) {
        return;
    }
    const AliveCounts& now = virtual_cameras::alive();
    *alive = {};
    CWorldLock world;
    for (const std::shared_ptr<Camera>& camera : presentCameras(world).all(world)) {
        alive->openDevices += static_cast<uint32_t>(camera->grabbers.size());
        alive->liveDevices += camera->live ? 1U : 0U;
    }
    alive->grabbers = now.grabbers.load();
    alive->listeners = now.listeners.load();
    alive->sinks = now.sinks.load();
    alive->buffers = now.buffers.load();
    alive->items = now.items.load();
    alive->interfaces = now.interfaces.load();
}

int32_t virtualCamerasInterfaceReferences(const char* camera, const char* item, const char* element,
                                          const char* interfaceName) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    const CInterfaceNode* node =
        found ? interfaceOf(*found, item, element, interfaceName) : nullptr;
    return node != nullptr ? node->callerReferences() : -1;
}

int32_t virtualCamerasReadProperty(const char* camera, const char* item, const char* element,
                                   const char* interfaceName, char* text, uint32_t textSize) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    const CInterfaceNode* node =
        found ? interfaceOf(*found, item, element, interfaceName) : nullptr;
    copyText(node != nullptr ? node->state(world) : std::string(), text, textSize);
    return node != nullptr ? 1 : 0;
}

uint32_t virtualCamerasPagesShown(void) {
    return pagesShown().load(std::memory_order_relaxed);
}

void virtualCamerasInPage(void (*work)(void* context), void* context) {
    const CWorldLock world;
    pageWork(world) = {work, context};
}

uint32_t virtualCamerasButtonPushes(const char* camera, const char* item) {
    CWorldLock world;
    const std::shared_ptr<Camera> found = cameraCalled(world, camera);
    return found ? found->properties->pushes(world, textOrEmpty(item)) : 0;
}
