// SPDX-License-Identifier: MIT
#include <limits>
#include <vector>

#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/text.h"
#include "properties/device_formats.h"
#include "properties/property_keys.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

namespace {

std::int32_t refuseSet(char* message) {
    writeText(message, 255, "This is a read only property.");
    return HOST_RESULT_FAILURE;
}

// Writes the items' narrow names with commas between. Once the text holds
// `fullAt` characters, no further name is added.
template <class Item>
void writeNames(char* value, const std::vector<Item>& items, std::size_t fullAt) {
    CBoundedText names(value, 255);
    for (const Item& item : items) {
        if (names.size() >= fullAt) {
            continue;
        }
        if (names.size() != 0) {
            names.append(",");
        }
        names.append(item.c_str());
    }
}

constexpr std::size_t neverFull = std::numeric_limits<std::size_t>::max();

}  // namespace

CPropertyVideoFormats::CPropertyVideoFormats(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyVideoFormats::getValue(char* /*message*/, char* value) {
    constexpr std::size_t formatsFullAt = 200;
    writeNames(value, toStandard(availableVideoFormats(m_grabber)), formatsFullAt);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyVideoFormats::setValue(char* message, std::string_view /*value*/) {
    return refuseSet(message);
}

CPropertyVideoFormatAt::CPropertyVideoFormatAt(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyVideoFormatAt::getValue(char* /*message*/, char* value) {
    const std::string_view name = m_name;
    const std::int32_t index = parseInteger(name.substr(
        name.size() < videoFormatPrefix.size() ? name.size() : videoFormatPrefix.size()));
    CBoundedText text(value, 255);
    std::int32_t position = 0;
    for (const auto& format : toStandard(availableVideoFormats(m_grabber))) {
        if (position == index) {
            text.append(format.c_str());
        }
        ++position;
    }
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyVideoFormatAt::setValue(char* message, std::string_view /*value*/) {
    return refuseSet(message);
}

CPropertyVideoNorms::CPropertyVideoNorms(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyVideoNorms::getValue(char* /*message*/, char* value) {
    writeNames(value, toStandard(m_grabber.getAvailableVideoNorms_()), neverFull);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyVideoNorms::setValue(char* message, std::string_view /*value*/) {
    return refuseSet(message);
}

CPropertyInputChannels::CPropertyInputChannels(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyInputChannels::getValue(char* /*message*/, char* value) {
    writeNames(value, toStandard(m_grabber.getAvailableInputChannels_()), neverFull);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyInputChannels::setValue(char* message, std::string_view /*value*/) {
    return refuseSet(message);
}
