// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/world.h"

#include "virtual_cameras/calls/call_log.h"
#include "virtual_cameras/live/camera.h"
#include "virtual_cameras/rig/rigs.h"

namespace virtual_cameras {

namespace {

struct Misuses {
    CMonitor monitor;
    std::uint32_t count GUARDED_BY(monitor) = 0;
    std::string last GUARDED_BY(monitor);
};

// None of these is ever destroyed: threads may still call while the process ends.
World& theWorld() {
    static World& world = *new World;
    return world;
}

Misuses& theMisuses() {
    static Misuses& misuses = *new Misuses;
    return misuses;
}

std::atomic<bool> ready{false};

}  // namespace

World::World() : cameras(camerasOf(standardRig())) {}

CMonitor& CWorldLock::s_monitor = *new CMonitor;

CWorldLock::CWorldLock() noexcept {
    s_monitor.lock();
}

CWorldLock::~CWorldLock() {
    s_monitor.unlock();
}

World* CWorldLock::operator->() const noexcept {
    return &theWorld();
}

void CWorldLock::wait(std::uint32_t milliseconds) noexcept {
    s_monitor.wait(milliseconds);
}

void CWorldLock::wakeAll() noexcept {
    s_monitor.wakeAll();
}

bool libraryIsReady() noexcept {
    return ready.load(std::memory_order_acquire);
}

void setLibraryReady(bool isReady) noexcept {
    ready.store(isReady, std::memory_order_release);
}

void countMisuse(std::string_view text) {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    ++misuses.count;
    misuses.last = text;
}

std::uint32_t misuses(char* last, std::uint32_t lastSize) {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    copyText(misuses.last, last, lastSize);
    return misuses.count;
}

void clearMisuses() {
    Misuses& misuses = theMisuses();
    const CMonitorGuard guard(misuses.monitor);
    misuses.count = 0;
    misuses.last.clear();
}

AliveCounts& alive() noexcept {
    static AliveCounts counts;
    return counts;
}

std::shared_ptr<Camera> findCamera(CWorldLock& world, std::string_view id) {
    for (const std::shared_ptr<Camera>& camera : world->cameras) {
        if (camera->id == id) {
            return camera;
        }
    }
    return nullptr;
}

}  // namespace virtual_cameras
