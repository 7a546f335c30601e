// SPDX-License-Identifier: MIT
#include "adapter/channel_registry.h"

#include <algorithm>
#include <memory>
#include <string>

#include "capture/capture_library.h"
#include "capture/conversions.h"
#include "platform/checked_access.h"

namespace {

void reportFailedDevice(const DShowLib::VideoCaptureDeviceItem& device) {
    constexpr std::size_t boxCharacters = 299;
    std::wstring text = L"Failed to initialize device ";
    text += toStandard(device.getFriendlyName_());
    text.resize(std::min(text.size(), boxCharacters));
    ::MessageBoxW(nullptr, text.c_str(), L"Device Error", MB_OK | MB_ICONERROR);
}

// Null when the library, or the construction, threw a text.
std::unique_ptr<CVideoChannel> openChannel(const DShowLib::VideoCaptureDeviceItem& device) {
    try {
        return std::make_unique<CVideoChannel>(device);
    } catch (char* /*text*/) {
        reportFailedDevice(device);
        return nullptr;
    }
}

}  // namespace

void ChannelRegistry::enumerate() {
    if (!m_libraryStarted) {
        DShowLib::InitLibrary();
        m_libraryStarted = true;
    }
    const DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    std::vector<std::unique_ptr<CVideoChannel>> opened;
    for (const auto& device : toStandard(devices)) {
        if (auto channel = openChannel(device); channel != nullptr) {
            opened.push_back(std::move(channel));
        }
    }
    m_channels.reserve(m_channels.size() + opened.size());
    for (auto& channel : opened) {
        m_channels.push_back(channel.release());
    }
    m_initialised = true;
}

CVideoChannel& ChannelRegistry::at(std::int32_t index) const {
    return *checkedAt(m_channels, index);
}

CVideoChannel* ChannelRegistry::find(const void* context) const noexcept {
    const auto found = std::find(m_channels.begin(), m_channels.end(), context);
    return found != m_channels.end() ? *found : nullptr;
}

void ChannelRegistry::close(const void* context) {
    const auto found = std::find(m_channels.begin(), m_channels.end(), context);
    if (found != m_channels.end()) {
        const std::unique_ptr<CVideoChannel> closing(*found);
        m_channels.erase(found);
    }
    if (m_channels.empty()) {
        DShowLib::ExitLibrary();
        m_libraryStarted = false;
    }
}
