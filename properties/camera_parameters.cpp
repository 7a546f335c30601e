// SPDX-License-Identifier: MIT
#include "properties/camera_parameters.h"

#include <array>
#include <string>

#include "capture/live_pause.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "properties/camera_features.h"
#include "properties/property_keys.h"
#include "properties/value_text.h"

namespace {

// A setting's text, read for the adapter's own use.
using TextBuffer = std::array<char, HOST_TEXT_BYTES>;

}  // namespace

void CCameraParameters::readFirst() {
    const auto items = m_grabber.getAvailableVCDProperties();
    m_contrast = readFraction(items, contrastKey, DShowLib::VCDID_Contrast);
    m_brightness = readFraction(items, brightnessKey, DShowLib::VCDID_Brightness);
    m_exposure = readExposure();
}

double CCameraParameters::readFraction(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items, std::string_view key,
    const GUID& itemId) const {
    if (!m_tables.hasProperty(key)) {
        return -1.0;
    }
    const auto range = bindInterface<DShowLib::IVCDRangeProperty>(findItem(items, itemId),
                                                                  DShowLib::VCDElement_Value);
    if (!range) {
        return 0.0;
    }
    LONG minimum = 0;
    LONG maximum = 0;
    LONG value = 0;
    throwIfFailed(range->getRangeMin(&minimum));
    throwIfFailed(range->getRangeMax(&maximum));
    throwIfFailed(range->getValue(&value));
    const auto lowest = static_cast<double>(minimum);
    return (static_cast<double>(value) - lowest) / (static_cast<double>(maximum) - lowest);
}

double CCameraParameters::readExposure() const {
    if (!m_tables.hasProperty(exposureKey)) {
        return -1.0;
    }
    // The automatic goes off where the exposure's value has a switch, not where it
    // has an automatic. Kept: hosts know which cameras change.
    if (m_tables.hasProperty(exposureValueSwitchKey)) {
        auto* automatic = dynamic_cast<CVCDPropertyAuto*>(m_tables.findProperty(exposureAutoKey));
        if (automatic != nullptr && automatic->isBound()) {
            automatic->setNumber(false);
        }
    }
    auto* exposure = dynamic_cast<CVCDPropertyAbsValue*>(m_tables.findProperty(exposureKey));
    return exposure != nullptr && exposure->isBound() ? exposure->getNumber() : -1.0;
}

void CCameraParameters::apply(const CameraParameterBlock& parameters, std::int32_t width,
                              std::int32_t height) {
    m_triggerEnabled = parameters.triggerEnable != 0;
    setRangeFraction(contrastKey, parameters.contrast);
    setRangeFraction(brightnessKey, parameters.brightness);
    setExposure(parameters.exposure);
    setTrigger(parameters.triggerEnable, parameters.triggerPolarity);
    storeRegion(parameters, width, height);
}

void CCameraParameters::restoreTrigger() const {
    if (CProperty* trigger = m_tables.findProperty(triggerEnableKey);
        m_triggerEnabled && trigger != nullptr) {
        trigger->setValue(nullptr, "true");
    }
}

void CCameraParameters::setRangeFraction(std::string_view key, double fraction) const {
    CProperty* property = m_tables.findProperty(key);
    CProperty* minimumProperty = m_tables.findProperty(std::string(key).append(minimumSuffix));
    CProperty* maximumProperty = m_tables.findProperty(std::string(key).append(maximumSuffix));
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

void CCameraParameters::setExposure(double exposure) const {
    CProperty* property = m_tables.findProperty(exposureKey);
    if (property == nullptr) {
        return;
    }
    TextBuffer message{};
    if (CProperty* automatic = m_tables.findProperty(exposureAutoKey); automatic != nullptr) {
        automatic->setValue(message.data(), "false");
    }
    TextBuffer text{};
    writeText(text.data(), 20, exposure);
    property->setValue(message.data(), text.data());
}

void CCameraParameters::setTrigger(std::int32_t enable, std::int32_t polarity) const {
    CProperty* enableProperty = m_tables.findProperty(triggerEnableKey);
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
        whileLiveIsPaused(m_grabber, [&] { enableProperty->setValue(message.data(), next); });
    }
    if (CProperty* polarityProperty = m_tables.findProperty(triggerPolarityKey);
        polarityProperty != nullptr) {
        polarityProperty->setValue(message.data(), polarity == 1 ? "true" : "false");
    }
}

void CCameraParameters::storeRegion(const CameraParameterBlock& parameters, std::int32_t width,
                                    std::int32_t height) noexcept {
    m_roiLeft = parameters.roiLeft;
    m_roiTop = parameters.roiTop;
    m_roiWidth = wrappingSum(m_roiLeft, parameters.roiWidth) > width
                     ? wrappingDifference(width, m_roiLeft)
                     : parameters.roiWidth;
    m_roiHeight = wrappingSum(m_roiTop, parameters.roiHeight) > height
                      ? wrappingDifference(height, m_roiTop)
                      : parameters.roiHeight;
}
