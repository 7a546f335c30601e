// SPDX-License-Identifier: MIT
#include "properties/property_description.h"

#include <array>

#include "capture/video_formats.h"
#include "platform/checked_access.h"
#include "platform/text.h"
#include "properties/property_keys.h"
#include "velmora/host_blocks.h"

std::int32_t nameProperty(const CPropertyTables& tables, std::int32_t index, char* name) {
    writeText(name, 254, "");
    const auto& keys = tables.listedKeys();
    if (index < 0 || static_cast<std::size_t>(index) >= keys.size()) {
        return HOST_RESULT_FAILURE;
    }
    writeText(name, 254, keys[static_cast<std::size_t>(index)]);
    ::OutputDebugStringW(L"\n");
    return HOST_RESULT_SUCCESS;
}

std::uint32_t kindOfProperty(std::string_view key) noexcept {
    // The later tests win.
    std::uint32_t kind = HOST_PROPERTY_TEXT;
    if (isSwitchKey(key) || key == videoFormatKey) {
        kind = HOST_PROPERTY_CHOICE;
    }
    if (key.find("execute") != std::string_view::npos) {
        kind = HOST_PROPERTY_EXECUTABLE;
    }
    return kind;
}

std::int32_t chooseFrom(char* errorText, DShowLib::Grabber& grabber, std::string_view key,
                        std::int32_t index, char* choice) {
    if (isSwitchKey(key)) {
        constexpr std::array<std::string_view, 2> states = {"false", "true"};
        if (index != 0 && index != 1) {
            return HOST_RESULT_FAILURE;
        }
        writeText(choice, 256, states[static_cast<std::size_t>(index)]);
        return HOST_RESULT_SUCCESS;
    }
    if (key == videoFormatKey) {
        const auto list = availableVideoFormats(grabber);
        const DShowLib::dvector<DShowLib::VideoFormatItem> none;
        const auto& formats = list ? *list : none;
        if (index >= static_cast<std::int32_t>(formats.size())) {
            return HOST_RESULT_FAILURE;
        }
        writeText(choice, 256, checkedAt(formats, index).c_str());
        return HOST_RESULT_SUCCESS;
    }
    writeText(errorText, 256, "Feature ", key, " Not Found");
    return HOST_RESULT_FAILURE;
}

void describeAttribute(std::uint32_t attribute, char* text) noexcept {
    if (attribute == 1) {
        writeText(text, 256, "No comment.");
    } else if (attribute == 2 || attribute == 3) {
        writeText(text, 256, "True");
    }
}
