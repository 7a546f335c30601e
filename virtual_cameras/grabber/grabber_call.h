// SPDX-License-Identifier: MIT
// What every operation of a grabber does before its own work: asks for faults,
// refuses to work outside InitLibrary and ExitLibrary, and keeps the error text.
#pragma once

#include <string>

#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/live/grabber_state.h"

namespace virtual_cameras {

// Why an operation cannot be done, for getLastError.
namespace refusal {
inline constexpr const char* notReady = "The library is not initialised.";
inline constexpr const char* noDevice = "No video capture device is open.";
inline constexpr const char* notConnected = "The video capture device is not connected.";
inline constexpr const char* live = "This is not possible while live video is running.";
inline constexpr const char* injected = "The device does not answer.";
}  // namespace refusal

// Whom a call is about that is not the grabber's own camera.
template <class Subject>
struct About {
    const Subject& subject;
};
template <class Subject>
About(const Subject&) -> About<Subject>;

class CGrabberCall : public CLibraryCall {
public:
    template <class Subject, class... Arguments>
    CGrabberCall(const char* operation, DShowLib::Grabber::Implementation& grabber,
                 About<Subject> about, const Arguments&... arguments)
        : CLibraryCall(operation, about.subject, arguments...), m_grabber(grabber.state) {}
    template <class... Arguments>
    CGrabberCall(const char* operation, DShowLib::Grabber::Implementation& grabber,
                 const Arguments&... arguments)
        : CLibraryCall(operation, grabber, arguments...), m_grabber(grabber.state) {}

    // `work` runs under the lock and tells whether it was done.
    template <class Work>
    bool tries(Work&& work) {
        bool done = false;
        {
            CWorldLock world;
            done = mayGoOn(world) && work(world);
        }
        return returns(done);
    }

    // `read` runs under the lock; `otherwise` is what a failing call answers.
    template <class Value, class Read>
    Value answers(Value otherwise, Read&& read) {
        Value value = otherwise;
        {
            CWorldLock world;
            if (mayGoOn(world)) {
                value = read(world);
            }
        }
        return returns(value);
    }

    // As answers, for lists: null, or empty where a fault asks for it.
    template <class List, class Read>
    DShowLib::smart_ptr<List> lists(Read&& read) {
        DShowLib::smart_ptr<List> list;
        {
            CWorldLock world;
            if (mayGoOn(world)) {
                list = read(world);
            } else if (fails() && failsEmpty()) {
                list = DShowLib::smart_ptr<List>(new List);
            }
        }
        return returns(list);
    }

    // False when the call is to fail; then the error text says why.
    bool mayGoOn(CWorldLock& world);
    // For a reason that lies in the state of things.
    bool refuses(const char* why);
    // For a reason that lies with the caller.
    bool refusesMisuse(const char* why);
    // False, with the text of the reason, when no device is open and connected.
    bool hasDevice(CWorldLock& world);
    // As hasDevice, and nobody streams from the device.
    bool hasIdleDevice(CWorldLock& world);

private:
    GrabberState& m_grabber;
};

}  // namespace virtual_cameras
