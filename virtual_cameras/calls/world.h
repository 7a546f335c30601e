// SPDX-License-Identifier: MIT
// What exists in this process: the cameras, who has them open, and the clock.
// All of it is under one lock, which is never held while a listener is called,
// a frame is drawn or a thread is joined.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/calls/monitor.h"
#include "virtual_cameras/control.h"

namespace virtual_cameras {

struct Camera;
struct Session;

struct World {
    World();

    std::vector<std::shared_ptr<Camera>> cameras;    // in the order of the rig
    std::vector<std::shared_ptr<Session>> sessions;  // live ones, and those that are ending
    // Through the control interface, so that the environment does not count.
    bool rigChosen = false;
    bool clockChosen = false;
    std::int32_t clock = VIRTUAL_CAMERAS_CLOCK_REAL;
    std::uint64_t steppedTime = 0;  // nanoseconds
    bool stepping = false;          // one thread at a time
    std::uint32_t pagesShown = 0;
};

// Holds the lock; the world is reached through nothing else.
class SCOPED_CAPABILITY CWorldLock {
public:
    CWorldLock() noexcept ACQUIRE(s_monitor);
    CWorldLock(const CWorldLock&) = delete;
    CWorldLock& operator=(const CWorldLock&) = delete;
    ~CWorldLock() RELEASE();

    World* operator->() const noexcept;

    // Lets go of the lock until somebody wakes, or the time is over.
    void wait(std::uint32_t milliseconds) noexcept NO_THREAD_SAFETY_ANALYSIS;
    void wakeAll() noexcept;

    template <class Work>
    void whileUnlocked(Work&& work) NO_THREAD_SAFETY_ANALYSIS {
        s_monitor.unlock();
        work();
        s_monitor.lock();
    }

private:
    static CMonitor& s_monitor;
};

// Between InitLibrary and ExitLibrary.
bool libraryIsReady() noexcept;
void setLibraryReady(bool ready) noexcept;

// A rule of the library was broken by its caller. With or without the lock.
void countMisuse(std::string_view text);
std::uint32_t misuses(char* last, std::uint32_t lastSize);
void clearMisuses();

// What is alive, by kind.
struct AliveCounts {
    std::atomic<std::uint32_t> grabbers{0};
    std::atomic<std::uint32_t> listeners{0};
    std::atomic<std::uint32_t> sinks{0};
    std::atomic<std::uint32_t> buffers{0};
    std::atomic<std::uint32_t> items{0};
    std::atomic<std::uint32_t> interfaces{0};
};
AliveCounts& alive() noexcept;

// The camera of that serial text or name; null when there is none.
std::shared_ptr<Camera> findCamera(CWorldLock& world, std::string_view id);

}  // namespace virtual_cameras
