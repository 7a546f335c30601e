// SPDX-License-Identifier: MIT
// CVideoChannel: starting, stopping, waiting and copying, and the return of a lost device.
#include <limits>

#include "acquisition/device_search.h"
#include "acquisition/frame_copy.h"
#include "acquisition/frame_delivery.h"
#include "adapter/video_channel.h"
#include "capture/live_pause.h"
#include "capture/no_device.h"
#include "platform/com_apartment.h"
#include "platform/log_trace.h"
#include "platform/outputs.h"
#include "platform/text.h"

namespace {

constexpr DWORD waitMilliseconds = 1000;

}  // namespace

std::int32_t CVideoChannel::StartAcquisition(char* errorText) {
    m_listener.clearFlags();
    m_listener.unlockBuffer();
    if (!m_grabber.isDevValid()) {
        writeText(errorText, 255, noDeviceText);
        return HOST_RESULT_FAILURE;
    }
    // A second start fails without a message, on purpose.
    if (m_grabber.isLive()) {
        return HOST_RESULT_FAILURE;
    }
    const CComApartment apartment(ComBalance::onlyFirst);
    std::int32_t result = HOST_RESULT_SUCCESS;
    m_sizeMayBeOld = true;
    if (m_grabber.startLive(false)) {
        takeSize();
        m_sizeMayBeOld = false;
    } else {
        writeText(errorText, 254, m_grabber.getLastError().c_str());
        result = HOST_RESULT_FAILURE;
    }
    if (apartment.stopsAtEnd()) {
        LogTrace(traceFileName, "%s", L"startAcquisition CoInit: stopped\n");
    }
    return result;
}

std::int32_t CVideoChannel::StopAcquisition(char* errorText) {
    if (!m_grabber.isDevValid()) {
        writeText(errorText, 255, noDeviceText);
        return HOST_RESULT_FAILURE;
    }
    if (!m_grabber.isLive()) {
        return HOST_RESULT_SUCCESS;
    }
    const CComApartment apartment(ComBalance::firstAndNested);
    m_grabber.stopLive();
    // No frame may be taken any more before the event and the ready flag go.
    m_listener.endWait();
    ::ResetEvent(m_frameEvent);
    m_listener.clearReady();
    try {
        m_sink.unlockRing();
    } catch (...) {
        m_listener.unlockBuffer();
        throw;
    }
    // The held buffer is in the ring as a rule, and is unlocked twice on purpose.
    m_listener.unlockBuffer();
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVideoChannel::WaitFrame(char* errorText, std::uint32_t* status) {
    if (!CheckDevice()) {
        writeText(errorText, 255, "The video capture device is disconnected.");
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_DEVICE);
        return HOST_RESULT_FAILURE;
    }
    m_listener.beginWait(m_frameEvent);
    const DWORD result = ::WaitForSingleObject(m_frameEvent, waitMilliseconds);
    m_listener.endWait();
    if (result == WAIT_TIMEOUT) {
        // The event is left as it is: a frame that comes just now is the next wait's.
        LogTrace(traceFileName, "%s \n", "Timeout");
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_FRAME);
    } else if (result == WAIT_OBJECT_0) {
        ::ResetEvent(m_frameEvent);
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_DONE);
    }
    return HOST_RESULT_SUCCESS;
}

bool CVideoChannel::CheckDevice() {
    constexpr const wchar_t* restoredText = L"Device restored!\n";

    if (m_grabber.isDevValid()) {
        return true;
    }
    m_listener.clearFlags();
    ::OutputDebugStringW(L"Device lost!\n");
    const CComApartment apartment(ComBalance::firstAndNested);
    if (!reopenDevice(m_grabber, m_serialText)) {
        return false;
    }
    m_sizeMayBeOld = true;
    try {
        m_parameters.restoreTrigger();
    } catch (...) {
        // The device is open again and will not be searched for: it has to be live.
        startLiveAnyway(m_grabber);
        ::OutputDebugStringW(restoredText);
        throw;
    }
    m_grabber.startLive(false);
    ::OutputDebugStringW(restoredText);
    return true;
}

std::int32_t CVideoChannel::GetImageInfo(char* errorText, ImageInfo* image, std::uint32_t* status) {
    if (!m_grabber.isDevValid()) {
        writeText(errorText, 255, noDeviceText);
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_DEVICE);
        return HOST_RESULT_FAILURE;
    }
    if (image != nullptr) {
        image->width = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxX());
        image->height = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxY());
        image->lineWidth = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxX());
        image->pixelType = static_cast<std::uint32_t>(m_pixelFormat->pixelType());
        image->regionLeft = 0;
        image->regionTop = 0;
        image->regionWidth = image->width;
        image->regionHeight = image->height;
        image->reserved0 = 0;
        image->reserved1 = 0;
    }
    writeIfGiven<std::uint32_t>(status, HOST_STATUS_DONE);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVideoChannel::CopyFrame(char* /*errorText*/, void* destination,
                                      std::uint32_t* status) {
    if (destination == nullptr) {
        // The caption is misspelt. Kept: hosts look for the box by it.
        ::MessageBoxW(nullptr, L"rawMemory == NULL", L"Eror", MB_OK);
    }
    if (m_listener.isHandingOver()) {
        // The wait for this frame has timed out: it belongs to the next wait.
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_FRAME);
        return HOST_RESULT_SUCCESS;
    }
    const DShowLib::MemBuffer* frame = destination != nullptr ? m_listener.readyBuffer() : nullptr;
    bool copied = false;
    if (frame != nullptr) {
        copied = copyPixels(static_cast<std::uint8_t*>(destination), *frame,
                            m_pixelFormat->pixelType(), m_sink, frameShape());
        m_listener.unlockBuffer();
    }
    writeIfGiven<std::uint32_t>(status, copied ? HOST_STATUS_DONE : HOST_STATUS_NO_FRAME);
    m_listener.clearReady();
    return HOST_RESULT_SUCCESS;
}

FrameShape CVideoChannel::frameShape() const noexcept {
    constexpr std::size_t bytesPerPixel = 3;
    // What the sink delivers may then be larger than the host was told.
    const bool isBounded = m_sizeMayBeOld || !m_sink.isFor(PixelType::rgb24);
    return {m_width, m_height, m_rawUnshifted,
            isBounded ? bytesPerPixel * frameBytes(m_width, m_height)
                      : std::numeric_limits<std::size_t>::max()};
}
