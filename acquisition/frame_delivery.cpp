// SPDX-License-Identifier: MIT
// CVideoChannel: describing the image, and the copy into the host's memory.
#include <span>

#include "acquisition/frame_copy.h"
#include "adapter/video_channel.h"
#include "capture/no_device.h"
#include "platform/outputs.h"
#include "platform/text.h"

namespace {

std::span<const std::uint8_t> bytesOf(const DShowLib::MemBuffer& frame) {
    const std::uint8_t* data = frame.getData();
    return data != nullptr ? std::span(data, frame.getSize()) : std::span<const std::uint8_t>();
}

}  // namespace

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
        image->pixelType = m_pixelFormat->pixelType();
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
    } else if (m_listener.isHandingOver()) {
        // The wait for this frame has timed out: it belongs to the next wait.
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_FRAME);
        return HOST_RESULT_SUCCESS;
    } else if (const DShowLib::MemBuffer* frame = m_listener.readyBuffer(); frame != nullptr) {
        copyPixels(*frame, static_cast<std::uint8_t*>(destination));
        m_listener.unlockBuffer();
        writeIfGiven<std::uint32_t>(status, HOST_STATUS_DONE);
        m_listener.clearReady();
        return HOST_RESULT_SUCCESS;
    }
    writeIfGiven<std::uint32_t>(status, HOST_STATUS_NO_FRAME);
    m_listener.clearReady();
    return HOST_RESULT_SUCCESS;
}

void CVideoChannel::copyPixels(const DShowLib::MemBuffer& frame, std::uint8_t* destination) const {
    switch (m_pixelFormat->pixelType()) {
        case HOST_PIXEL_RAW8:
            CopyRaw8(frame, destination);
            break;
        case HOST_PIXEL_RGB24: {
            DShowLib::FrameTypeInfo frameType{};
            if (m_sink) {
                m_sink->getOutputFrameType(frameType);
            }
            frameCopyKernels().block(destination, bytesOf(frame), frameType.bufferSize);
            break;
        }
        default:
            frameCopyKernels().block(destination, bytesOf(frame), frameBytes(m_width, m_height));
            break;
    }
}

void CVideoChannel::CopyRaw8(const DShowLib::MemBuffer& frame, std::uint8_t* destination) const {
    const FrameCopyKernels& kernels = frameCopyKernels();
    if (m_rawFromRgb32) {
        kernels.mosaic(destination, bytesOf(frame), m_width, m_height);
    } else if (m_rawUnshifted) {
        kernels.block(destination, bytesOf(frame), frameBytes(m_width, m_height));
    } else {
        kernels.shifted(destination, bytesOf(frame), m_width, m_height);
    }
}
