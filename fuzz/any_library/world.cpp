// SPDX-License-Identifier: MIT
#include "fuzz/any_library/world.h"

#include <array>
#include <new>
#include <stdexcept>

#include "fuzz/any_library/live.h"
#include "fuzz/any_library/properties.h"
#include "fuzz/input/fuzz_input.h"

namespace any_library {

namespace {

World theWorld;

struct Size {
    std::int32_t width;
    std::int32_t height;
};
constexpr std::array<Size, 16> sizes = {{{8, 4},
                                         {3, 3},
                                         {1, 1},
                                         {5, 2},
                                         {0, 0},
                                         {2, 7},
                                         {64, 3},
                                         {1, 9},
                                         {-8, 4},
                                         {-3, -5},
                                         {7, -2},
                                         {0, 5},
                                         {2147483647, 2},
                                         {65536, 65537},
                                         {-2147483647 - 1, -1},
                                         {31, 33}}};

constexpr std::array<std::int32_t, 4> failures = {E_FAIL, E_ACCESSDENIED, -1, -2147483647 - 1};

[[noreturn]] void throwOf(Manner manner) {
    static char text[] = "the library says no";
    // NOLINTBEGIN(misc-throw-by-value-catch-by-reference): that is
    // how it says so.
    switch (manner) {
        case Manner::throwsText:
            throw static_cast<char*>(text);
        case Manner::throwsConstantText:
            throw static_cast<const char*>(text);
        case Manner::throwsInteger:
            throw failures[answers().detail() % failures.size()];
        default:
            break;
    }
    // NOLINTEND(misc-throw-by-value-catch-by-reference)
    if (answers().detail() % 2 == 0) {
        throw std::bad_alloc();
    }
    throw std::runtime_error("the library fails");
}

}  // namespace

World& world() noexcept {
    return theWorld;
}

void takeSize() {
    const Size& size = sizes[answers().take() % sizes.size()];
    theWorld.width = size.width;
    theWorld.height = size.height;
}

void beginWorld() {
    theWorld = World();
    CAnswers& input = answers();
    theWorld.devices = input.take();
    theWorld.formats = input.take();
    theWorld.norms = input.take();
    theWorld.channels = input.take();
    theWorld.rates = input.take();
    theWorld.numbers = input.take();
    theWorld.serial = input.take();
    theWorld.tree = input.take();
    theWorld.frames = input.take();
    takeSize();
    const std::uint8_t flags = input.take();
    theWorld.tellsOtherSizes = (flags & 1U) != 0;
    theWorld.isStubborn = (flags & 2U) != 0;
    theWorld.isPresent = (flags & 4U) == 0;
    theWorld.callsLeft = 5000;
    theWorld.properties = makeTree(theWorld.tree);
}

void endWorld() {
    const Alive& alive = theWorld.alive;
    theWorld.properties = {};
    require(alive.grabbers == 0, "every grabber goes with its channel");
    require(alive.items == 0, "every value of the library goes");
    require(alive.sinks == 0 && alive.collections == 0, "every sink goes");
    require(alive.buffers == 0, "every buffer goes");
    require(alive.references == 0, "every reference is given back");
    theWorld.objects.clear();
}

Manner beginCall() {
    require(theWorld.isStarted, "no call comes before the start or after the end");
    if (theWorld.callsLeft == 0) {
        return Manner::refused;
    }
    --theWorld.callsLeft;
    const Manner manner = answers().next();
    switch (manner) {
        case Manner::throwsText:
        case Manner::throwsConstantText:
        case Manner::throwsInteger:
        case Manner::throwsStandard:
            throwOf(manner);
        case Manner::delivers:
            deliver(answers().detail());
            return Manner::ordinary;
        case Manner::vanishes:
            theWorld.isPresent = !theWorld.isPresent;
            return Manner::ordinary;
        default:
            return manner;
    }
}

HRESULT resultOf(Manner manner) noexcept {
    return manner == Manner::refused ? failures[answers().detail() % failures.size()] : S_OK;
}

void deliver(std::uint8_t detail) {
    for (const OpenGrabber& open : theWorld.grabbers) {
        deliverTo(open, detail);
    }
}

}  // namespace any_library
