// SPDX-License-Identifier: MIT
#include "properties/device_formats.h"

#include <string>
#include <vector>

#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/checked_access.h"
#include "platform/text.h"
#include "velmora/host_blocks.h"

namespace {

// Names are read as the library's narrow text, but formats and input channels
// are compared by their wide text: the two may differ.
template <class Item>
std::string comparedName(const Item& item) {
    return toNarrow(item.toString_());
}
std::string_view comparedName(const DShowLib::VideoNormItem& norm) {
    return textOrEmpty(norm.c_str());
}

// Every match is set: of two items with one name, the last stays chosen. False without any.
template <class Item, class Choose>
bool chooseByName(const std::vector<Item>& items, std::string_view name, const Choose& choose) {
    bool found = false;
    for (const Item& item : items) {
        if (comparedName(item) == name) {
            choose(item);
            found = true;
        }
    }
    return found;
}

}  // namespace

CPropertyVideoFormat::CPropertyVideoFormat(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyVideoFormat::getValue(char* /*message*/, char* value) {
    writeText(value, 255, m_grabber.getVideoFormat().c_str());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyVideoFormat::setValue(char* message, std::string_view value) {
    if (m_grabber.isLive()) {
        writeText(message, 255, "Can not set video format, while live video is running.");
        return HOST_RESULT_FAILURE;
    }
    const auto formats = toStandard(availableVideoFormats(m_grabber));
    const bool found = chooseByName(formats, value, [this](const auto& format) {
        m_grabber.setVideoFormat(format);
        m_changed = true;
    });
    if (!found) {
        writeText(message, 255, "Unknown video format \"", value, "\".");
        return HOST_RESULT_FAILURE;
    }
    return HOST_RESULT_SUCCESS;
}

CPropertyVideoNorm::CPropertyVideoNorm(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyVideoNorm::getValue(char* /*message*/, char* value) {
    writeText(value, 255, m_grabber.getVideoNorm().c_str());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyVideoNorm::setValue(char* message, std::string_view value) {
    if (m_grabber.isLive()) {
        writeText(message, 255, "Can not set video norm, while live video is running.");
        return HOST_RESULT_FAILURE;
    }
    const auto norms = toStandard(m_grabber.getAvailableVideoNorms_());
    if (norms.empty()) {
        // Kept with its misspelling: hosts match this text.
        writeText(message, 255, "Video noms are not supported.");
        return HOST_RESULT_FAILURE;
    }
    if (!chooseByName(norms, value, [this](const auto& norm) { chooseNorm(norm); })) {
        writeText(message, 255, "Unknown video norm \"", value, "\".");
        return HOST_RESULT_FAILURE;
    }
    return HOST_RESULT_SUCCESS;
}

void CPropertyVideoNorm::chooseNorm(const DShowLib::VideoNormItem& norm) {
    m_grabber.setVideoNorm(norm);
    const auto formats = toStandard(availableVideoFormats(m_grabber));
    m_grabber.setVideoFormat(checkedAt(formats, static_cast<std::int64_t>(formats.size()) - 1));
}

CPropertyInputChannel::CPropertyInputChannel(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {}

std::int32_t CPropertyInputChannel::getValue(char* /*message*/, char* value) {
    writeText(value, 255, m_grabber.getInputChannel().c_str());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyInputChannel::setValue(char* message, std::string_view value) {
    const auto channels = toStandard(m_grabber.getAvailableInputChannels_());
    if (channels.empty()) {
        writeText(message, 255, "Input channels are not supported.");
        return HOST_RESULT_FAILURE;
    }
    if (!chooseByName(channels, value,
                      [this](const auto& channel) { m_grabber.setInputChannel(channel); })) {
        writeText(message, 255, "Unknown input channel \"", value, "\".");
        return HOST_RESULT_FAILURE;
    }
    return HOST_RESULT_SUCCESS;
}
