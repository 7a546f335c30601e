// SPDX-License-Identifier: MIT
#include "adapter/video_channel.h"

#include <algorithm>
#include <array>

#include "capture/conversions.h"
#include "platform/text.h"
#include "properties/process_store.h"

namespace {

// Models that deliver their raw mosaic aligned already.
constexpr std::array<std::string_view, 2> unshiftedModels = {"QRM 52XAV07", "QRM 52XBV07"};

// The listener asks for every event; it overrides what it needs.
constexpr ULONG allEvents = 0xFFFFFFFF;

bool isUnshifted(const DShowLib::VideoCaptureDeviceItem& item) {
    const std::string model = toNarrow(item.getFriendlyName_());
    return std::find(unshiftedModels.begin(), unshiftedModels.end(), model) !=
           unshiftedModels.end();
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the channel has a copy of its own.
CVideoChannel::CVideoChannel(DShowLib::VideoCaptureDeviceItem item) {
    writeText(m_deviceName.data(), m_deviceName.size() - 2, item.c_str());
    openDevice(item);
    m_pixelFormat = makeForProcess<CPropertyPixelFormat>("Pixelformat", m_grabber, m_sink.sink());
    if (m_sink.SelectDefaultVideoFormat()) {
        m_pixelFormat->setPixelType(PixelType::raw8);
    }
    m_rawUnshifted = isUnshifted(item);
    m_sink.CreateNewSink(m_pixelFormat->pixelType());
    takeSize();
    writeSerialText();
    m_tables.buildPropertyTable(m_grabber, *m_pixelFormat);
    m_parameters.readFirst();
    m_frameEvent = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
}

CVideoChannel::~CVideoChannel() {
    try {
        if (m_grabber.isLive()) {
            m_grabber.stopLive();
        }
    } catch (...) {
        // Nothing is left to tell: the grabber closes its device either way.
    }
    m_listener.releaseBuffer();
}

void CVideoChannel::openDevice(const DShowLib::VideoCaptureDeviceItem& item) {
    m_grabber.addListener(&m_listener, allEvents);
    m_grabber.openDev(item);
    m_grabber.setOverlayBitmapPathPosition(0);
}

void CVideoChannel::takeSize() {
    // Both are asked for before either is taken: half a size would be one that no host
    // knows of.
    const LONG width = m_grabber.getAcqSizeMaxX();
    const LONG height = m_grabber.getAcqSizeMaxY();
    m_width = static_cast<std::int32_t>(width);
    m_height = static_cast<std::int32_t>(height);
}

void CVideoChannel::writeSerialText() {
    m_serialText = "n/a";
    std::int64_t serialNumber = 0;
    if (m_grabber.getDev().getSerialNumber(serialNumber)) {
        m_serialText = hexadecimalText(serialNumber);
    }
}
