// SPDX-License-Identifier: MIT
// CVideoChannel: its settings by key, and the new sink that some of them ask for.
#include "adapter/video_channel.h"
#include "platform/outputs.h"
#include "platform/text.h"
#include "properties/property_description.h"
#include "properties/property_keys.h"

namespace {

// Quotes the key as the host gave it.
std::int32_t refuseUnknown(char* errorText, const char* key) noexcept {
    writeText(errorText, 255, "Unknown property \"", key, "\"");
    return HOST_RESULT_FAILURE;
}

}  // namespace

std::int32_t CVideoChannel::GetPropertyValue(char* errorText, const char* key, char* value) {
    CProperty* property = m_tables.findProperty(normalisedKey(textOrEmpty(key)));
    return property != nullptr ? property->getValue(errorText, value)
                               : refuseUnknown(errorText, key);
}

std::int32_t CVideoChannel::SetPropertyValue(char* errorText, const char* key, const char* value) {
    CProperty* property = m_tables.findProperty(normalisedKey(textOrEmpty(key)));
    if (property == nullptr) {
        return refuseUnknown(errorText, key);
    }
    // To the host, a failure that threw looks like an unknown key. Kept so. The key is quoted
    // then, and a refusal may have been written over it: one buffer may be both.
    char quoted[hostTextBytes];
    writeText(quoted, 255, key);
    try {
        const std::int32_t result = property->setValue(errorText, textOrEmpty(value));
        if (property->isChanged()) {
            m_sink.CreateNewSink(m_pixelFormat->pixelType());
        }
        return result;
    } catch (...) {
        return refuseUnknown(errorText, quoted);
    }
}

std::int32_t CVideoChannel::GetPropertyName(char* /*errorText*/, std::int32_t index, char* name) {
    return nameProperty(m_tables, index, name);
}

std::int32_t CVideoChannel::GetPropertyType(char* /*errorText*/, const char* key,
                                            std::uint32_t* type) {
    writeIfGiven(type, kindOfProperty(textOrEmpty(key)));
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVideoChannel::GetPropertyChoice(char* errorText, const char* key, std::int32_t index,
                                              char* choice) {
    return chooseFrom(errorText, m_grabber, textOrEmpty(key), index, choice);
}

std::int32_t CVideoChannel::GetPropertyAttribute(char* /*errorText*/, const char* /*key*/,
                                                 std::uint32_t attribute, char* text) {
    describeAttribute(attribute, text);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVideoChannel::ExecuteCommand(char* errorText, const char* command) {
    CExecute* execute = m_tables.findExecute(normalisedKey(textOrEmpty(command)));
    if (execute == nullptr) {
        writeText(errorText, 255, "Unknown command \"", command, "\"");
        return HOST_RESULT_FAILURE;
    }
    return execute->execute(errorText);
}

std::int32_t CVideoChannel::SetCameraParameters(char* /*errorText*/,
                                                const CameraParameterBlock* parameters) {
    if (parameters != nullptr) {
        m_parameters.apply(*parameters, m_width, m_height);
    }
    return HOST_RESULT_SUCCESS;
}
