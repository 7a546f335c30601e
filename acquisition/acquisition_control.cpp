// SPDX-License-Identifier: MIT
// CVideoChannel: starting, stopping and waiting, and the search for a lost device.
#include "adapter/video_channel.h"
#include "capture/conversions.h"
#include "capture/no_device.h"
#include "platform/com_apartment.h"
#include "platform/log_trace.h"
#include "platform/outputs.h"
#include "platform/text.h"
#include "properties/property_keys.h"

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
    if (m_grabber.startLive(false)) {
        m_width = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxX());
        m_height = static_cast<std::int32_t>(m_grabber.getAcqSizeMaxY());
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
    unlockRing();
    // The held buffer is in the ring as a rule, and is unlocked twice on purpose.
    m_listener.unlockBuffer();
    return HOST_RESULT_SUCCESS;
}

void CVideoChannel::unlockRing() {
    if (!m_sink) {
        return;
    }
    const auto buffers = m_sink->getMemBufferCollection();
    if (!buffers) {
        return;
    }
    for (ULONG i = 0; i < buffers->getBufferCount(); ++i) {
        if (const auto buffer = (*buffers)[i]; buffer) {
            buffer->unlock();
        }
    }
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
    if (m_grabber.isDevValid()) {
        return true;
    }
    m_listener.clearFlags();
    ::OutputDebugStringW(L"Device lost!\n");
    const CComApartment apartment(ComBalance::firstAndNested);
    return restoreDevice();
}

bool CVideoChannel::restoreDevice() {
    for (const auto& item : toStandard(m_grabber.getAvailableVideoCaptureDevices_())) {
        // The serial number is read from the open device.
        m_grabber.openDev(item);
        std::int64_t serialNumber = 0;
        if (!m_grabber.getDev().getSerialNumber(serialNumber)) {
            continue;
        }
        if (hexadecimalText(serialNumber) == m_serialText) {
            resumeLive();
            return true;
        }
        m_grabber.closeDev();
    }
    return false;
}

void CVideoChannel::resumeLive() {
    if (m_triggerEnabled) {
        restoreTrigger();
    }
    m_grabber.startLive(false);
    ::OutputDebugStringW(L"Device restored!\n");
}

void CVideoChannel::restoreTrigger() {
    CProperty* trigger = findProperty(triggerEnableKey);
    if (trigger == nullptr) {
        return;
    }
    try {
        trigger->setValue(nullptr, "true");
    } catch (...) {
        // The result counts as little as a refusal: the camera is live again either
        // way, and a device left open but stopped would never be searched for.
    }
}
