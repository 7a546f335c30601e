// SPDX-License-Identifier: MIT
#include "properties/device_formats.h"

#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/checked_access.h"
#include "platform/text.h"
#include "velmora/host_blocks.h"

// Names are read as the library's narrow text, but formats and input channels
// are compared by their wide text: the two may differ.

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
    // Every match is set: of two formats with one name, the last stays chosen.
    bool found = false;
    for (const auto& format : toStandard(availableVideoFormats(m_grabber))) {
        if (toNarrow(format.toString_()) == value) {
            m_grabber.setVideoFormat(format);
            m_changed = true;
            found = true;
        }
    }
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
    bool found = false;
    for (const auto& norm : norms) {
        if (textOrEmpty(norm.c_str()) == value) {
            chooseNorm(norm);
            found = true;
        }
    }
    if (!found) {
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
    bool found = false;
    for (const auto& channel : channels) {
        if (toNarrow(channel.toString_()) == value) {
            m_grabber.setInputChannel(channel);
            found = true;
        }
    }
    if (!found) {
        writeText(message, 255, "Unknown input channel \"", value, "\".");
        return HOST_RESULT_FAILURE;
    }
    return HOST_RESULT_SUCCESS;
}
