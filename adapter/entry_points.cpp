// SPDX-License-Identifier: MIT
#include "adapter/entry_points.h"

#include <cstring>

#include "adapter/channel_registry.h"

namespace {

// One call of the host into the channel of a context.
class CHostCall {
public:
    explicit CHostCall(const void* context) noexcept
        : m_channel(channelRegistry().enter(context)) {}
    CHostCall(const CHostCall&) = delete;
    CHostCall& operator=(const CHostCall&) = delete;
    ~CHostCall() {
        if (m_channel != nullptr) {
            channelRegistry().leave(*m_channel);
        }
    }

    CVideoChannel* channel() const noexcept { return m_channel; }

private:
    CVideoChannel* m_channel;
};

// The one shape of all entry points: find the channel of the context, forward,
// return. A context that is null, closed or unknown fails and touches nothing.
template <auto operation, class... Arguments>
std::int32_t forward(char* errorText, void* context, Arguments... arguments) {
    const CHostCall call(context);
    return call.channel() != nullptr ? (call.channel()->*operation)(errorText, arguments...)
                                     : HOST_RESULT_FAILURE;
}

std::int32_t closeChannel(char* /*errorText*/, void* context) {
    channelRegistry().close(context);
    return HOST_RESULT_SUCCESS;
}

void fillEntryPoints(VideoChannelRecord& record) {
    record.SetCameraParameters = &forward<&CVideoChannel::SetCameraParameters>;
    record.GetImageInfo = &forward<&CVideoChannel::GetImageInfo>;
    record.WaitFrame = &forward<&CVideoChannel::WaitFrame>;
    record.CopyFrame = &forward<&CVideoChannel::CopyFrame>;
    record.StartAcquisition = &forward<&CVideoChannel::StartAcquisition>;
    record.StopAcquisition = &forward<&CVideoChannel::StopAcquisition>;
    record.ExecuteCommand = &forward<&CVideoChannel::ExecuteCommand>;
    record.GetPropertyValue = &forward<&CVideoChannel::GetPropertyValue>;
    record.SetPropertyValue = &forward<&CVideoChannel::SetPropertyValue>;
}

void fillExtendedEntryPoints(VideoChannelRecord& record) {
    record.GetPropertyName = &forward<&CVideoChannel::GetPropertyName>;
    record.GetPropertyType = &forward<&CVideoChannel::GetPropertyType>;
    record.GetPropertyChoice = &forward<&CVideoChannel::GetPropertyChoice>;
    record.GetPropertyAttribute = &forward<&CVideoChannel::GetPropertyAttribute>;
    record.CloseChannel = &closeChannel;
}

// With its terminator and nothing behind it.
void copyText(char* destination, const char* source) {
    std::memcpy(destination, source, std::strlen(source) + 1);
}

}  // namespace

void fillRecord(VideoChannelRecord& record, CVideoChannel& channel) {
    constexpr std::uint32_t baseSize = 632;
    constexpr std::uint32_t extendedAbove = 608;

    record.size = baseSize;
    record.context = &channel;
    fillEntryPoints(record);
    record.exposure = channel.exposure();
    record.contrast = channel.contrast();
    record.brightness = channel.brightness();
    record.maxWidth = channel.width();
    record.maxHeight = channel.height();
    copyText(record.deviceName, channel.deviceName());
    copyText(record.serialText, channel.serialText());
    // Always true after the write above: hosts of any age get the extension.
    if (record.size > extendedAbove) {
        fillExtendedEntryPoints(record);
    }
}
