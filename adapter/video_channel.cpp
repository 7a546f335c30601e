// SPDX-License-Identifier: MIT
#include "adapter/video_channel.h"

#include <algorithm>
#include <array>

#include "capture/capture_library.h"
#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "properties/camera_features.h"
#include "properties/process_store.h"
#include "properties/property_keys.h"

namespace {

// Models that deliver their raw mosaic aligned already.
constexpr std::array<std::string_view, 2> unshiftedModels = {"QRM 52XAV07", "QRM 52XBV07"};

// The listener asks for every event; it overrides what it needs.
constexpr ULONG allEvents = 0xFFFFFFFF;

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the channel has a copy of its own.
CVideoChannel::CVideoChannel(DShowLib::VideoCaptureDeviceItem item) {
    writeText(m_deviceName.data(), m_deviceName.size() - 2, item.c_str());
    openDevice(item);
    m_pixelFormat = makeForProcess<CPropertyPixelFormat>("Pixelformat", m_grabber, m_sink);
    SelectDefaultVideoFormat();
    noticeQuirks(item);
    CreateNewSink();
    m_width = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxX());
    m_height = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxY());
    writeSerialText();
    buildPropertyTable();
    const auto items = m_grabber.getAvailableVCDProperties();
    m_contrast = readFraction(items, contrastKey, DShowLib::VCDID_Contrast);
    m_brightness = readFraction(items, brightnessKey, DShowLib::VCDID_Brightness);
    m_exposure = readExposure();
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

void CVideoChannel::noticeQuirks(const DShowLib::VideoCaptureDeviceItem& item) {
    const std::string model = toNarrow(item.getFriendlyName_());
    m_rawUnshifted =
        std::find(unshiftedModels.begin(), unshiftedModels.end(), model) != unshiftedModels.end();
}

double CVideoChannel::readFraction(const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items,
                                   std::string_view key, const GUID& itemId) const {
    if (!hasProperty(key)) {
        return -1.0;
    }
    const auto range = bindInterface<DShowLib::IVCDRangeProperty>(findItem(items, itemId),
                                                                  DShowLib::VCDElement_Value);
    if (!range) {
        return 0.0;
    }
    LONG minimum = 0;
    LONG maximum = 0;
    LONG value = 0;
    throwIfFailed(range->getRangeMin(&minimum));
    throwIfFailed(range->getRangeMax(&maximum));
    throwIfFailed(range->getValue(&value));
    const auto lowest = static_cast<double>(minimum);
    return (static_cast<double>(value) - lowest) / (static_cast<double>(maximum) - lowest);
}

double CVideoChannel::readExposure() const {
    if (!hasProperty(exposureKey)) {
        return -1.0;
    }
    // The automatic goes off where the exposure's value has a switch, not where it
    // has an automatic. Kept: hosts know which cameras change.
    if (hasProperty(exposureValueSwitchKey)) {
        auto* automatic = dynamic_cast<CVCDPropertyAuto*>(findProperty(exposureAutoKey));
        if (automatic != nullptr && automatic->isBound()) {
            automatic->setNumber(false);
        }
    }
    auto* exposure = dynamic_cast<CVCDPropertyAbsValue*>(findProperty(exposureKey));
    return exposure != nullptr && exposure->isBound() ? exposure->getNumber() : -1.0;
}
