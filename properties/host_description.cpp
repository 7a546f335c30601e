// SPDX-License-Identifier: MIT
// CVideoChannel: names, kinds, choices and attributes of settings, all told by
// the key alone.
#include <array>

#include "adapter/video_channel.h"
#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/checked_access.h"
#include "platform/outputs.h"
#include "platform/text.h"
#include "properties/property_keys.h"

std::int32_t CVideoChannel::GetPropertyName(char* /*errorText*/, std::int32_t index, char* name) {
    writeText(name, 254, "");
    if (index >= static_cast<std::int32_t>(m_properties.size())) {
        return HOST_RESULT_FAILURE;
    }
    std::int32_t result = HOST_RESULT_FAILURE;
    std::int32_t listed = 0;
    for (const auto& [key, property] : m_properties) {
        if (!isListedKey(key)) {
            continue;
        }
        if (listed == index) {
            writeText(name, 254, key);
            ::OutputDebugStringW(L"\n");
            result = HOST_RESULT_SUCCESS;
        }
        ++listed;
    }
    return result;
}

std::int32_t CVideoChannel::GetPropertyType(char* /*errorText*/, const char* key,
                                            std::uint32_t* type) {
    const std::string_view text = textOrEmpty(key);
    std::uint32_t kind = HOST_PROPERTY_TEXT;
    if (isSwitchKey(text) || text == videoFormatKey) {
        kind = HOST_PROPERTY_CHOICE;
    }
    if (text.find("execute") != std::string_view::npos) {
        kind = HOST_PROPERTY_EXECUTABLE;
    }
    writeIfGiven(type, kind);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVideoChannel::GetPropertyChoice(char* errorText, const char* key, std::int32_t index,
                                              char* choice) {
    const std::string_view text = textOrEmpty(key);
    if (isSwitchKey(text)) {
        constexpr std::array<std::string_view, 2> states = {"false", "true"};
        if (index != 0 && index != 1) {
            return HOST_RESULT_FAILURE;
        }
        writeText(choice, 256, states[static_cast<std::size_t>(index)]);
        return HOST_RESULT_SUCCESS;
    }
    if (text == videoFormatKey) {
        const auto formats = toStandard(availableVideoFormats(m_grabber));
        if (index >= static_cast<std::int32_t>(formats.size())) {
            return HOST_RESULT_FAILURE;
        }
        writeText(choice, 256, checkedAt(formats, index).c_str());
        return HOST_RESULT_SUCCESS;
    }
    writeText(errorText, 256, "Feature ", text, " Not Found");
    return HOST_RESULT_FAILURE;
}

std::int32_t CVideoChannel::GetPropertyAttribute(char* /*errorText*/, const char* /*key*/,
                                                 std::uint32_t attribute, char* text) {
    if (attribute == 1) {
        writeText(text, 256, "No comment.");
    } else if (attribute == 2 || attribute == 3) {
        writeText(text, 256, "True");
    }
    return HOST_RESULT_SUCCESS;
}
