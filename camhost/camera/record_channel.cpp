// SPDX-License-Identifier: MIT
#include "camhost/camera/record_channel.h"

#include <algorithm>
#include <iterator>

#include "camhost/base/failure.h"
#include "camhost/camera/adapter_call.h"

namespace camhost {

namespace {

// More choices than any camera has; ends the walk of an adapter that never does.
constexpr std::int32_t mostChoices = 10000;

std::string boundedText(const char* text, std::size_t capacity) {
    return {text, std::find(text, text + capacity, '\0')};
}

}  // namespace

CRecordChannel::CRecordChannel(const VideoChannelRecord& record, std::int32_t index)
    : m_record(record),
      m_index(index),
      m_name(boundedText(record.deviceName, std::size(record.deviceName))),
      m_serial(boundedText(record.serialText, std::size(record.serialText))) {}

std::string CRecordChannel::selector() const {
    return hasSerial() ? m_serial : "#" + std::to_string(m_index);
}

void CRecordChannel::checkBuffer(const CGuardedText& buffer, const char* entry) const {
    if (!buffer.intact()) {
        throw Failure{.code = "internal",
                      .message = std::string(entry) + ": the adapter wrote past the text buffer"};
    }
}

template <class Call>
std::int32_t CRecordChannel::guarded(const char* entry, Call call) {
    m_message.clear();
    const std::int32_t result = callAdapter(entry, call);
    checkBuffer(m_message, entry);
    return result;
}

template <class Call>
Reply CRecordChannel::reply(const char* entry, Call call) {
    const std::int32_t result = guarded(entry, call);
    return {result, m_message.text()};
}

Reply CRecordChannel::getValue(const std::string& key, std::string& value) {
    m_value.clear();
    Reply answer = reply("GetPropertyValue", [&] {
        return m_record.GetPropertyValue(m_message.data(), m_record.context, key.c_str(),
                                         m_value.data());
    });
    checkBuffer(m_value, "GetPropertyValue");
    value = m_value.text();
    return answer;
}

Reply CRecordChannel::setValue(const std::string& key, const std::string& value) {
    return reply("SetPropertyValue", [&] {
        return m_record.SetPropertyValue(m_message.data(), m_record.context, key.c_str(),
                                         value.c_str());
    });
}

std::uint32_t CRecordChannel::propertyType(const std::string& key) {
    std::uint32_t type = HOST_PROPERTY_TEXT;
    guarded("GetPropertyType", [&] {
        return m_record.GetPropertyType(m_message.data(), m_record.context, key.c_str(), &type);
    });
    return type;
}

std::vector<std::string> CRecordChannel::choices(const std::string& key) {
    std::vector<std::string> found;
    for (std::int32_t index = 0; index < mostChoices; ++index) {
        m_value.clear();
        const std::int32_t result = guarded("GetPropertyChoice", [&] {
            return m_record.GetPropertyChoice(m_message.data(), m_record.context, key.c_str(),
                                              index, m_value.data());
        });
        checkBuffer(m_value, "GetPropertyChoice");
        if (result != HOST_RESULT_SUCCESS) {
            break;
        }
        found.push_back(m_value.text());
    }
    return found;
}

Reply CRecordChannel::execute(const std::string& command) {
    return reply("ExecuteCommand", [&] {
        return m_record.ExecuteCommand(m_message.data(), m_record.context, command.c_str());
    });
}

Reply CRecordChannel::applyParameters(const CameraParameterBlock& block) {
    return reply("SetCameraParameters", [&] {
        return m_record.SetCameraParameters(m_message.data(), m_record.context, &block);
    });
}

Reply CRecordChannel::imageInfo(ImageInfo& image, std::uint32_t& status) {
    status = HOST_STATUS_NO_DEVICE;
    return reply("GetImageInfo", [&] {
        return m_record.GetImageInfo(m_message.data(), m_record.context, &image, &status);
    });
}

bool CRecordChannel::hasDevice() {
    ImageInfo image{};
    std::uint32_t status = 0;
    return imageInfo(image, status).done() || status != HOST_STATUS_NO_DEVICE;
}

bool CRecordChannel::neverOpened() {
    std::string first;
    return !hasDevice() && !getValue("feature_1", first).done();
}

ImageInfo CRecordChannel::readImageInfo() {
    ImageInfo image{};
    std::uint32_t status = 0;
    const Reply answer = imageInfo(image, status);
    if (!answer.done()) {
        const bool lost = status == HOST_STATUS_NO_DEVICE;
        throw Failure{.exit = lost ? ExitCode::DeviceLost : ExitCode::Refused,
                      .code = lost ? "device_lost" : "refused",
                      .message = answer.message,
                      .adapterMessage = answer.message};
    }
    return image;
}

Reply CRecordChannel::start() {
    return reply("StartAcquisition",
                 [&] { return m_record.StartAcquisition(m_message.data(), m_record.context); });
}

Reply CRecordChannel::stop() {
    return reply("StopAcquisition",
                 [&] { return m_record.StopAcquisition(m_message.data(), m_record.context); });
}

FrameReply CRecordChannel::waitFrame() {
    FrameReply answer{0, HOST_STATUS_NO_FRAME};
    answer.result = guarded("WaitFrame", [&] {
        return m_record.WaitFrame(m_message.data(), m_record.context, &answer.status);
    });
    return answer;
}

FrameReply CRecordChannel::copyFrame(void* destination) {
    FrameReply answer{0, HOST_STATUS_NO_FRAME};
    answer.result = guarded("CopyFrame", [&] {
        return m_record.CopyFrame(m_message.data(), m_record.context, destination, &answer.status);
    });
    return answer;
}

void CRecordChannel::close() {
    if (m_record.CloseChannel != nullptr && m_record.context != nullptr) {
        guarded("CloseChannel",
                [&] { return m_record.CloseChannel(m_message.data(), m_record.context); });
        m_record.context = nullptr;
    }
}

}  // namespace camhost
