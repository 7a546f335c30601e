// SPDX-License-Identifier: MIT
// Frame sinks: where a grabber puts the frames, and in which form.
//
// An implementer supplies the struct `Implementation` of GrabberSinkType, the
// constructor and destructor of both classes, and the operations below.
#pragma once

#include <cstdint>

#include "capture/library/export.h"
#include "capture/library/handles.h"
#include "capture/library/mem_buffer.h"

namespace DShowLib {

// The form of one frame.
struct FrameTypeInfo {
    GUID subtype;              // media subtype; the null id means none
    std::int32_t width;        // pixels; 0 means what the device delivers
    std::int32_t height;       // pixels; 0 means what the device delivers
    std::uint32_t bufferSize;  // bytes of one frame; 0 where it is asked for
};
static_assert(sizeof(FrameTypeInfo) == 28);

// The base through which a sink is handed to a grabber.
class CAPTURE_LIBRARY_API GrabberSinkType {
public:
    struct Implementation;
    GrabberSinkType(const GrabberSinkType&) = delete;
    GrabberSinkType& operator=(const GrabberSinkType&) = delete;

    Implementation* implementation() const noexcept { return m_implementation; }

protected:
    explicit GrabberSinkType(Implementation* adopted) noexcept;
    ~GrabberSinkType();

private:
    Implementation* m_implementation;
};

// A sink that fills a ring of buffers and tells the grabber's listeners.
class CAPTURE_LIBRARY_API FrameHandlerSink : public GrabberSinkType {
public:
    struct tCreateData {
        std::uint32_t bufferCount = 0;
        dvector<FrameTypeInfo> frameTypes;              // accepted; empty: whatever comes
        smart_ptr<MemBufferCollection> userCollection;  // empty: the sink makes its own ring
    };

    explicit FrameHandlerSink(Implementation* adopted) noexcept;
    ~FrameHandlerSink();

    static smart_ptr<FrameHandlerSink> create(const tCreateData& data);

    // True: keep only snapped frames. False: deliver continuously.
    void setSnapMode(bool snap);
    // The frames that really arrive. False, with the argument left alone, while
    // the sink is not connected to a device.
    bool getOutputFrameType(FrameTypeInfo& frameType) const;
    smart_ptr<MemBufferCollection> getMemBufferCollection() const;
};

}  // namespace DShowLib
