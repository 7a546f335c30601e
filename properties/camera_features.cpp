// SPDX-License-Identifier: MIT
#include "properties/camera_features.h"

#include <string>
#include <vector>

#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

namespace {

constexpr std::size_t textBound = 255;

// A number as a text writes it: 32-bit integers and doubles.
std::int32_t shown(LONG number) noexcept {
    return static_cast<std::int32_t>(number);
}
double shown(double number) noexcept {
    return number;
}

void parseInto(LONG& number, std::string_view text) noexcept {
    number = parseInteger(text);
}
void parseInto(double& number, std::string_view text) noexcept {
    number = parseFloat(text);
}

std::int32_t refuseMinimum(char* message, std::string_view name) {
    writeText(message, textBound, "Minimum values can not be set! ", name);
    return HOST_RESULT_FAILURE;
}

std::int32_t refuseMaximum(char* message, std::string_view name) {
    writeText(message, textBound, "Maximum values can not be set! ", name);
    return HOST_RESULT_FAILURE;
}

// The texts that a map-strings interface accepts, in the library's order.
std::vector<std::string> validTexts(DShowLib::IVCDMapStringsProperty& mapStrings) {
    DShowLib::smart_com<DShowLib::IVCDTexts> list;
    throwIfFailed(mapStrings.getStrings(list.put()));
    std::vector<std::string> texts;
    if (!list) {
        return texts;
    }
    LONG count = 0;
    throwIfFailed(list->getCount(&count));
    for (LONG index = 1; index <= count; ++index) {
        CComText text;
        throwIfFailed(list->getItem(index, text.put()));
        texts.push_back(text.narrow());
    }
    return texts;
}

}  // namespace

template <class Interface, class Number>
CRangedBinding<Interface, Number>::CRangedBinding(const GUID& itemId, DShowLib::Grabber& grabber,
                                                  const GUID& elementId) {
    const auto item = findItem(grabber.getAvailableVCDProperties(), itemId);
    m_automatic = bindInterface<DShowLib::IVCDSwitchProperty>(item, DShowLib::VCDElement_Auto);
    m_interface = bindInterface<Interface>(item, elementId);
}

template <class Interface, class Number>
Number CRangedBinding<Interface, Number>::value() const {
    Number number{};
    throwIfFailed(m_interface->getValue(&number));
    return number;
}

template <class Interface, class Number>
Number CRangedBinding<Interface, Number>::lowerLimit() const {
    Number number{};
    throwIfFailed(m_interface->getRangeMin(&number));
    return number;
}

template <class Interface, class Number>
Number CRangedBinding<Interface, Number>::upperLimit() const {
    Number number{};
    throwIfFailed(m_interface->getRangeMax(&number));
    return number;
}

template <class Interface, class Number>
std::int32_t CRangedBinding<Interface, Number>::write(Number value) const {
    const HRESULT result = m_interface->setValue(value);
    throwIfFailed(result);
    return static_cast<std::int32_t>(result);
}

template <class Interface, class Number>
std::int32_t CRangedBinding<Interface, Number>::set(char* message, std::string_view name,
                                                    std::string_view value) const {
    if (!isBound()) {
        return refuseUnavailable(message, name);
    }
    if (isAutomaticOn(m_automatic)) {
        return refuseAutomatic(message, name);
    }
    const Number lower = lowerLimit();
    const Number upper = upperLimit();
    Number number{};
    parseInto(number, value);
    if (!(lower <= number && number <= upper)) {
        writeText(message, textBound, name, " must be within ", shown(lower), " and ", shown(upper),
                  "!");
        return HOST_RESULT_FAILURE;
    }
    write(number);
    return HOST_RESULT_SUCCESS;
}

CVCDPropertyValue::CVCDPropertyValue(const GUID& itemId, std::string_view name,
                                     DShowLib::Grabber& grabber, const GUID& elementId)
    : CProperty(name), m_binding(itemId, grabber, elementId) {}

std::int32_t CVCDPropertyValue::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, shown(m_binding.value()));
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyValue::setValue(char* message, std::string_view value) {
    return m_binding.set(message, m_name, value);
}

std::int32_t CVCDPropertyValue::getNumber() {
    return shown(m_binding.value());
}

std::int32_t CVCDPropertyValue::setNumber(std::int32_t number) {
    return m_binding.write(number);
}

std::int32_t CVCDPropertyValueMin::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, shown(m_binding.lowerLimit()));
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyValueMin::setValue(char* message, std::string_view /*value*/) {
    return isBound() ? refuseMinimum(message, m_name) : refuseUnavailable(message, m_name);
}

std::int32_t CVCDPropertyValueMax::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, shown(m_binding.upperLimit()));
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyValueMax::setValue(char* message, std::string_view /*value*/) {
    return isBound() ? refuseMaximum(message, m_name) : refuseUnavailable(message, m_name);
}

CVCDPropertyAbsValue::CVCDPropertyAbsValue(const GUID& itemId, std::string_view name,
                                           DShowLib::Grabber& grabber, const GUID& elementId)
    : CProperty(name), m_binding(itemId, grabber, elementId) {}

std::int32_t CVCDPropertyAbsValue::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, m_binding.value());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyAbsValue::setValue(char* message, std::string_view value) {
    return m_binding.set(message, m_name, value);
}

double CVCDPropertyAbsValue::getNumber() {
    return m_binding.value();
}

std::int32_t CVCDPropertyAbsValue::setNumber(double number) {
    return m_binding.write(number);
}

std::int32_t CVCDPropertyAbsValueMin::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, m_binding.lowerLimit());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyAbsValueMin::setValue(char* message, std::string_view /*value*/) {
    return isBound() ? refuseMinimum(message, m_name) : refuseUnavailable(message, m_name);
}

std::int32_t CVCDPropertyAbsValueMax::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, m_binding.upperLimit());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyAbsValueMax::setValue(char* message, std::string_view /*value*/) {
    return isBound() ? refuseMaximum(message, m_name) : refuseUnavailable(message, m_name);
}

CVCDPropertyAuto::CVCDPropertyAuto(const GUID& itemId, std::string_view name,
                                   DShowLib::Grabber& grabber, const GUID& elementId)
    : CProperty(name),
      m_switch(bindInterface<DShowLib::IVCDSwitchProperty>(
          findItem(grabber.getAvailableVCDProperties(), itemId), elementId)) {}

std::int32_t CVCDPropertyAuto::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, getNumber() ? "true" : "false");
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyAuto::setValue(char* message, std::string_view value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    setNumber(equalsIgnoringCase(value, "true"));
    return HOST_RESULT_SUCCESS;
}

bool CVCDPropertyAuto::getNumber() {
    return isOn(*m_switch.get());
}

std::int32_t CVCDPropertyAuto::setNumber(bool on) {
    const HRESULT result = m_switch->setSwitch(on ? VARIANT_TRUE : VARIANT_FALSE);
    throwIfFailed(result);
    return static_cast<std::int32_t>(result);
}

CVCDPropertyMapString::CVCDPropertyMapString(const GUID& itemId, std::string_view name,
                                             DShowLib::Grabber& grabber, const GUID& elementId)
    : CProperty(name),
      m_mapStrings(bindInterface<DShowLib::IVCDMapStringsProperty>(
          findItem(grabber.getAvailableVCDProperties(), itemId), elementId)) {}

std::int32_t CVCDPropertyMapString::getValue(char* message, char* value) {
    if (!m_mapStrings) {
        return refuseUnavailable(message, m_name);
    }
    CComText text;
    throwIfFailed(m_mapStrings->getString(text.put()));
    writeText(value, textBound, text.narrow());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CVCDPropertyMapString::setValue(char* message, std::string_view value) {
    if (!m_mapStrings) {
        return refuseUnavailable(message, m_name);
    }
    // Every match is written, also a second one.
    bool found = false;
    const std::vector<std::string> texts = validTexts(*m_mapStrings.get());
    for (const std::string& text : texts) {
        if (text == value) {
            const CComText wide(toWide(text));
            throwIfFailed(m_mapStrings->setString(wide.get()));
            found = true;
        }
    }
    if (found) {
        return HOST_RESULT_SUCCESS;
    }
    CBoundedText list(message, 250);
    list.append("Valid values are:");
    for (const std::string& text : texts) {
        list.append("\"").append(text).append("\" ");
    }
    return HOST_RESULT_FAILURE;
}
