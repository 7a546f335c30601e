// SPDX-License-Identifier: MIT
// CVideoChannel: reading and writing settings by key.
#include <string>

#include "adapter/video_channel.h"
#include "platform/text.h"
#include "properties/property_keys.h"

namespace {

// Quotes the key as the host gave it.
std::int32_t refuseUnknown(char* errorText, const char* key) noexcept {
    writeText(errorText, 255, "Unknown property \"", key, "\"");
    return HOST_RESULT_FAILURE;
}

}  // namespace

std::int32_t CVideoChannel::GetPropertyValue(char* errorText, const char* key, char* value) {
    CProperty* property = findProperty(normalisedKey(textOrEmpty(key)));
    return property != nullptr ? property->getValue(errorText, value)
                               : refuseUnknown(errorText, key);
}

std::int32_t CVideoChannel::SetPropertyValue(char* errorText, const char* key, const char* value) {
    const std::string normalised = normalisedKey(textOrEmpty(key));
    CProperty* property = findProperty(normalised);
    if (property == nullptr) {
        return refuseUnknown(errorText, key);
    }
    // To the host, a failure that threw looks like an unknown key. Kept so.
    try {
        const std::int32_t result = property->setValue(errorText, textOrEmpty(value));
        if (property->isChanged()) {
            CreateNewSink();
        }
        return result;
    } catch (...) {
        return refuseUnknown(errorText, key);
    }
}
