// SPDX-License-Identifier: MIT
// What the library is like for the length of one input, and what it has handed out.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "capture/library/grabber.h"
#include "fuzz/any_library/answers.h"

namespace any_library {

// Objects that COM counts, kept to the end of the input so that a late call is noticed.
class CCounted {
public:
    CCounted() = default;
    CCounted(const CCounted&) = delete;
    CCounted& operator=(const CCounted&) = delete;
    virtual ~CCounted() = default;
};

// A grabber that is alive, with its inside.
struct OpenGrabber {
    DShowLib::Grabber* grabber;
    DShowLib::Grabber::Implementation* inside;
};

// Counts of what is alive.
struct Alive {
    std::int32_t grabbers = 0;
    std::int32_t items = 0;
    std::int32_t sinks = 0;
    std::int32_t collections = 0;
    std::int32_t buffers = 0;
    std::int32_t references = 0;  // to COM objects
    std::int32_t locked = 0;      // buffers
};

struct World {
    // As the input describes it.
    std::uint8_t devices = 0;
    std::uint8_t formats = 0;
    std::uint8_t norms = 0;
    std::uint8_t channels = 0;
    std::uint8_t rates = 0;
    std::uint8_t numbers = 0;  // of ranges and values
    std::uint8_t serial = 0;
    std::uint8_t tree = 0;
    std::uint8_t frames = 0;       // how many bytes a buffer holds
    bool tellsOtherSizes = false;  // the sinks' sizes have nothing to do with the format's
    bool isStubborn = false;       // an ordinary start or stop changes nothing
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool isPresent = true;  // the camera is connected
    bool isStarted = false;
    bool hasFailedUnlock = false;
    // From here on the library refuses: no input may keep the adapter busy for long.
    std::uint32_t callsLeft = 0;
    std::uint32_t liveStarts = 0;  // calls
    std::int32_t toldWidth = 0;    // at the last call
    std::int32_t toldHeight = 0;

    Alive alive;
    std::vector<OpenGrabber> grabbers;
    std::vector<std::unique_ptr<CCounted>> objects;
    DShowLib::smart_com<DShowLib::IVCDPropertyItems> properties;
};

World& world() noexcept;

// A new world, described by the input.
void beginWorld();
// Nothing that was handed out is left. The properties' tree goes.
void endWorld();
void takeSize();

// The manner of a call that begins: what throws has thrown, and what calls back has done
// so, before it returns.
Manner beginCall();
// The same for a call with a result code; negative for a failure.
HRESULT resultOf(Manner manner) noexcept;

// A call of every listener that there is, as from the delivery thread.
void deliver(std::uint8_t detail);

// Runs while a property page is shown.
void setPageWork(void (*work)());

}  // namespace any_library
