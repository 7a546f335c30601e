// SPDX-License-Identifier: MIT
#include "adapter/channel_registry.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "adapter/delay_load.h"
#include "adapter/module_reference.h"
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

// Sets a flag for the length of a scope.
class CRaisedFlag {
public:
    explicit CRaisedFlag(bool& flag) noexcept : m_flag(flag) { m_flag = true; }
    CRaisedFlag(const CRaisedFlag&) = delete;
    CRaisedFlag& operator=(const CRaisedFlag&) = delete;
    ~CRaisedFlag() { m_flag = false; }

private:
    bool& m_flag;
};

}  // namespace

bool ChannelRegistry::enumerate() {
    const CRaisedFlag enumerating(m_enumerating);
    if (!m_libraryStarted) {
        if (!startCaptureLibrary()) {
            return false;
        }
        m_libraryStarted = true;
        m_libraryEverStarted = true;
    }
    try {
        openAll();
    } catch (...) {
        releaseOwnModule();
        throw;
    }
    m_initialised = true;
    return true;
}

void ChannelRegistry::openAll() {
    const DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    std::vector<std::unique_ptr<CVideoChannel>> opened;
    for (const auto& device : toStandard(devices)) {
        if (auto channel = openChannel(device); channel != nullptr) {
            opened.push_back(std::move(channel));
            // Before the box of a later device, in which the host may do anything.
            if (opened.size() == 1) {
                holdOwnModule();
            }
        }
    }
    m_closed.reserve(opened.size());
    m_listed.reserve(opened.size());
    for (auto& channel : opened) {
        m_listed.push_back({channel.release(), 0});
    }
}

CVideoChannel& ChannelRegistry::at(std::int32_t index) const {
    return *checkedAt(m_listed, index).channel;
}

std::vector<ChannelRegistry::Entry>::iterator ChannelRegistry::entryOf(
    std::vector<Entry>& entries, const void* context) noexcept {
    return std::find_if(entries.begin(), entries.end(),
                        [context](const Entry& entry) { return entry.channel == context; });
}

CVideoChannel* ChannelRegistry::enter(const void* context) noexcept {
    const auto found = entryOf(m_listed, context);
    if (found == m_listed.end()) {
        return nullptr;
    }
    ++found->calls;
    return found->channel;
}

void ChannelRegistry::leave(const CVideoChannel& channel) noexcept {
    if (const auto listed = entryOf(m_listed, &channel); listed != m_listed.end()) {
        --listed->calls;
        return;
    }
    const auto closed = entryOf(m_closed, &channel);
    if (closed == m_closed.end() || --closed->calls != 0) {
        return;
    }
    CVideoChannel* last = closed->channel;
    m_closed.erase(closed);
    destroy(last);
    try {
        shutDownIfIdle();
    } catch (...) {
        // The call that leaves has an answer of its own to give.
    }
}

void ChannelRegistry::close(const void* context) {
    if (const auto found = entryOf(m_listed, context); found != m_listed.end()) {
        const Entry entry = *found;
        m_listed.erase(found);
        if (entry.calls != 0) {
            m_closed.push_back(entry);
            return;
        }
        destroy(entry.channel);
    }
    shutDownIfIdle();
}

void ChannelRegistry::destroy(CVideoChannel* channel) noexcept {
    ++m_destroying;
    delete channel;
    --m_destroying;
}

void ChannelRegistry::shutDownIfIdle() {
    const bool inUse = !m_listed.empty() || !m_closed.empty() || m_destroying != 0 || m_enumerating;
    if (inUse || !m_libraryEverStarted) {
        return;
    }
    DShowLib::ExitLibrary();
    m_libraryStarted = false;
    releaseOwnModule();
}
