// SPDX-License-Identifier: MIT
// CVideoChannel: commands by key, the block of camera parameters, and the serial
// text.
#include <array>
#include <string>

#include "adapter/video_channel.h"
#include "platform/text.h"
#include "properties/property_keys.h"
#include "properties/value_text.h"

namespace {

// A setting's text, read for the adapter's own use.
using TextBuffer = std::array<char, HOST_TEXT_BYTES>;

}  // namespace

std::int32_t CVideoChannel::ExecuteCommand(char* errorText, const char* command) {
    CExecute* execute = findExecute(normalisedKey(textOrEmpty(command)));
    if (execute == nullptr) {
        writeText(errorText, 255, "Unknown command \"", command, "\"");
        return HOST_RESULT_FAILURE;
    }
    return execute->execute(errorText);
}

std::int32_t CVideoChannel::SetCameraParameters(char* /*errorText*/,
                                                const CameraParameterBlock* parameters) {
    if (parameters == nullptr) {
        return HOST_RESULT_SUCCESS;
    }
    m_triggerEnabled = parameters->triggerEnable != 0;
    setRangeFraction(contrastKey, parameters->contrast);
    setRangeFraction(brightnessKey, parameters->brightness);
    setExposure(parameters->exposure);
    setTrigger(parameters->triggerEnable, parameters->triggerPolarity);
    storeRegion(*parameters);
    return HOST_RESULT_SUCCESS;
}

void CVideoChannel::setRangeFraction(std::string_view key, double fraction) {
    CProperty* property = findProperty(key);
    CProperty* minimumProperty = findProperty(std::string(key).append(minimumSuffix));
    CProperty* maximumProperty = findProperty(std::string(key).append(maximumSuffix));
    if (property == nullptr || minimumProperty == nullptr || maximumProperty == nullptr) {
        return;
    }
    TextBuffer message{};
    TextBuffer minimumText{};
    if (minimumProperty->getValue(message.data(), minimumText.data()) != HOST_RESULT_SUCCESS) {
        return;
    }
    TextBuffer maximumText{};
    maximumProperty->getValue(message.data(), maximumText.data());
    const std::int32_t minimum = parseInteger(minimumText.data());
    const std::int32_t maximum = parseInteger(maximumText.data());
    const std::int32_t offset = truncateToInteger(wrappingDifference(maximum, minimum) * fraction);
    TextBuffer text{};
    writeText(text.data(), 255, wrappingSum(minimum, offset));
    property->setValue(message.data(), text.data());
}

void CVideoChannel::setExposure(double exposure) {
    CProperty* property = findProperty(exposureKey);
    if (property == nullptr) {
        return;
    }
    TextBuffer message{};
    if (CProperty* automatic = findProperty(exposureAutoKey); automatic != nullptr) {
        automatic->setValue(message.data(), "false");
    }
    TextBuffer text{};
    writeText(text.data(), 20, exposure);
    property->setValue(message.data(), text.data());
}

void CVideoChannel::setTrigger(std::int32_t enable, std::int32_t polarity) {
    CProperty* enableProperty = findProperty(triggerEnableKey);
    if (enableProperty == nullptr) {
        return;
    }
    TextBuffer message{};
    TextBuffer current{};
    enableProperty->getValue(message.data(), current.data());
    std::string_view next;
    if (std::string_view(current.data()) == "false" && enable == 1) {
        next = "true";
    } else if (std::string_view(current.data()) == "true" && enable == 0) {
        next = "false";
    }
    if (!next.empty()) {
        const bool wasLive = m_grabber.isLive();
        if (wasLive) {
            m_grabber.stopLive();
        }
        enableProperty->setValue(message.data(), next);
        if (wasLive) {
            m_grabber.startLive(false);
        }
    }
    if (CProperty* polarityProperty = findProperty(triggerPolarityKey);
        polarityProperty != nullptr) {
        polarityProperty->setValue(message.data(), polarity == 1 ? "true" : "false");
    }
}

void CVideoChannel::storeRegion(const CameraParameterBlock& parameters) {
    m_roiLeft = parameters.roiLeft;
    m_roiTop = parameters.roiTop;
    m_roiWidth = wrappingSum(m_roiLeft, parameters.roiWidth) > m_width
                     ? wrappingDifference(m_width, m_roiLeft)
                     : parameters.roiWidth;
    m_roiHeight = wrappingSum(m_roiTop, parameters.roiHeight) > m_height
                      ? wrappingDifference(m_height, m_roiTop)
                      : parameters.roiHeight;
}

void CVideoChannel::writeSerialText() {
    m_serialText = "n/a";
    std::int64_t serialNumber = 0;
    if (m_grabber.getDev().getSerialNumber(serialNumber)) {
        m_serialText = hexadecimalText(serialNumber);
    }
}
