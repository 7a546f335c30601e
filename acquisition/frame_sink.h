// SPDX-License-Identifier: MIT
// CFrameSink: which frames the grabber delivers, and the ring that they come in.
#pragma once

#include <cstdint>
#include <optional>

#include "capture/capture_library.h"
#include "capture/pixel_type.h"

// One sink at a time. Host thread; CreateNewSink wants live video stopped, and changes
// nothing where a live grabber refuses the new sink. What the library throws passes on.
class CFrameSink {
public:
    // The grabber is not owned.
    explicit CFrameSink(DShowLib::Grabber& grabber) noexcept : m_grabber(grabber) {}
    CFrameSink(const CFrameSink&) = delete;
    CFrameSink& operator=(const CFrameSink&) = delete;

    // Makes the last of the device's grey formats current. Whether it offers any other:
    // its frames are then raw ones, to begin with.
    bool SelectDefaultVideoFormat();

    // Replaces the sink by one for the pixel type and the current video format.
    void CreateNewSink(PixelType pixelType);

    const DShowLib::smart_ptr<DShowLib::FrameHandlerSink>& sink() const noexcept { return m_sink; }
    // Raw frames arrive as 32-bit pixels, to be turned into the mosaic again.
    bool isRawFromRgb32() const noexcept { return m_rawFromRgb32; }
    // Whether the sink delivers what that pixel type wants: after a sink that could not be
    // made, the one before it stays.
    bool isFor(PixelType pixelType) const noexcept { return m_sink && m_pixelType == pixelType; }
    // Bytes of a frame as it really arrives; none where the sink does not tell.
    std::optional<std::uint32_t> outputSize() const;

    // Every buffer of the ring, locked or not, also after one of them has thrown.
    void unlockRing() const;

private:
    DShowLib::Grabber& m_grabber;
    DShowLib::smart_ptr<DShowLib::FrameHandlerSink> m_sink;
    PixelType m_pixelType = PixelType::mono8;
    // Of the pixel type raw8: no other copy asks for it.
    bool m_rawFromRgb32 = false;
};
