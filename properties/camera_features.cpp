// SPDX-License-Identifier: MIT
#include "properties/camera_features.h"

#include <string>
#include <vector>

#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "properties/collection_members.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

namespace {

constexpr std::size_t textBound = 255;

void parseInto(std::int32_t& number, std::string_view text) noexcept {
    number = parseInteger(text);
}
void parseInto(double& number, std::string_view text) noexcept {
    number = parseFloat(text);
}

// What one of the reading operations of an interface answers.
template <class Shown, class Interface, class Number>
Shown read(Interface& from, HRESULT (STDMETHODCALLTYPE Interface::*operation)(Number*)) {
    Number number{};
    throwIfFailed((from.*operation)(&number));
    return static_cast<Shown>(number);
}

std::string_view wordFor(RangeLimit limit) noexcept {
    return limit == RangeLimit::minimum ? "Minimum" : "Maximum";
}

// The texts that a map-strings interface accepts, in the library's order.
std::vector<std::string> validTexts(DShowLib::IVCDMapStringsProperty& mapStrings) {
    DShowLib::smart_com<DShowLib::IVCDTexts> list;
    throwIfFailed(mapStrings.getStrings(list.put()));
    std::vector<std::string> texts;
    if (!list) {
        return texts;
    }
    forEachIndex(*list.get(), [&](LONG index) {
        CComText text;
        throwIfFailed(list->getItem(index, text.put()));
        texts.push_back(text.narrow());
    });
    return texts;
}

}  // namespace

template <class Interface, class Number, class Shown>
CVCDPropertyRanged<Interface, Number, Shown>::CVCDPropertyRanged(const GUID& itemId,
                                                                 std::string_view name,
                                                                 DShowLib::Grabber& grabber,
                                                                 const GUID& elementId)
    : CProperty(name) {
    const auto item = findItem(grabber.getAvailableVCDProperties(), itemId);
    m_automatic = bindInterface<DShowLib::IVCDSwitchProperty>(item, DShowLib::VCDElement_Auto);
    m_interface = bindInterface<Interface>(item, elementId);
}

template <class Interface, class Number, class Shown>
std::int32_t CVCDPropertyRanged<Interface, Number, Shown>::getValue(char* message, char* value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    writeText(value, textBound, getNumber());
    return HOST_RESULT_SUCCESS;
}

template <class Interface, class Number, class Shown>
std::int32_t CVCDPropertyRanged<Interface, Number, Shown>::setValue(char* message,
                                                                    std::string_view value) {
    if (!isBound()) {
        return refuseUnavailable(message, m_name);
    }
    if (isAutomaticOn(m_automatic)) {
        return refuseAutomatic(message, m_name);
    }
    const Shown lower = limitOf(RangeLimit::minimum);
    const Shown upper = limitOf(RangeLimit::maximum);
    Shown number{};
    parseInto(number, value);
    if (!(lower <= number && number <= upper)) {
        writeText(message, textBound, m_name, " must be within ", lower, " and ", upper, "!");
        return HOST_RESULT_FAILURE;
    }
    setNumber(number);
    return HOST_RESULT_SUCCESS;
}

template <class Interface, class Number, class Shown>
Shown CVCDPropertyRanged<Interface, Number, Shown>::getNumber() {
    return read<Shown>(*m_interface.get(), &Interface::getValue);
}

template <class Interface, class Number, class Shown>
std::int32_t CVCDPropertyRanged<Interface, Number, Shown>::setNumber(Shown number) {
    const HRESULT result = m_interface->setValue(number);
    throwIfFailed(result);
    return static_cast<std::int32_t>(result);
}

template <class Interface, class Number, class Shown>
Shown CVCDPropertyRanged<Interface, Number, Shown>::limitOf(RangeLimit limit) const {
    return read<Shown>(*m_interface.get(), limit == RangeLimit::minimum ? &Interface::getRangeMin
                                                                        : &Interface::getRangeMax);
}

template <class Ranged, RangeLimit limit>
std::int32_t CVCDPropertyLimit<Ranged, limit>::getValue(char* message, char* value) {
    if (!this->isBound()) {
        return refuseUnavailable(message, this->m_name);
    }
    writeText(value, textBound, this->limitOf(limit));
    return HOST_RESULT_SUCCESS;
}

template <class Ranged, RangeLimit limit>
std::int32_t CVCDPropertyLimit<Ranged, limit>::setValue(char* message, std::string_view /*value*/) {
    if (!this->isBound()) {
        return refuseUnavailable(message, this->m_name);
    }
    writeText(message, textBound, wordFor(limit), " values can not be set! ", this->m_name);
    return HOST_RESULT_FAILURE;
}

template class CVCDPropertyRanged<DShowLib::IVCDRangeProperty, LONG, std::int32_t>;
template class CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::minimum>;
template class CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::maximum>;
template class CVCDPropertyRanged<DShowLib::IVCDAbsoluteValueProperty, double, double>;
template class CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::minimum>;
template class CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::maximum>;

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
