// SPDX-License-Identifier: MIT
// What a grabber tells those who registered with it.
#pragma once

#include "capture/library/handles.h"
#include "capture/library/mem_buffer.h"

namespace DShowLib {

class Grabber;

// Called on the library's own delivery thread. All members are defined here, so
// that the class needs nothing from the library at link time. The order of the
// virtual members is part of the library's border.
class GrabberListener {
public:
    // NOLINTBEGIN(performance-unnecessary-value-param): handles cross by value here.
    GrabberListener() = default;
    GrabberListener(const GrabberListener&) = default;
    GrabberListener& operator=(const GrabberListener&) = default;
    virtual ~GrabberListener() = default;

    // A frame may be drawn over before it is delivered.
    virtual void overlayCallback(Grabber&, smart_ptr<MemBuffer>&) {}
    // A buffer has been filled. `frameNumber` counts from the start of live video.
    virtual void frameReady(Grabber&, smart_ptr<MemBuffer>, ULONG /*frameNumber*/) {}
    // A buffer was filled but dropped before delivery; its handle is given back on return.
    virtual void frameDropped(Grabber&, smart_ptr<MemBuffer>, ULONG /*frameNumber*/) {}
    // The device is gone.
    virtual void deviceLost(Grabber&) {}
    // NOLINTEND(performance-unnecessary-value-param)
};

}  // namespace DShowLib
