// SPDX-License-Identifier: MIT
// The CVCDProperty family: settings that the camera itself offers, each bound to
// one interface of one element of one device-property item.
#pragma once

#include <cstdint>

#include "properties/feature_binding.h"
#include "properties/property.h"

// Common to the family:
// - Construction binds to the interface and stops quietly where something is
//   missing; the setting then answers every text operation with "... property
//   is not available!".
// - A failing result code of the bound interface is thrown as a 32-bit integer.
// - getNumber and setNumber are for bound settings only: ask isBound first.

enum class RangeLimit { minimum, maximum };

// A number with its limits, and the switch of the item's automatic, which is empty for
// an item without one. `Number` is the interface's type, `Shown` the one of the texts.
template <class Interface, class Number, class Shown>
class CVCDPropertyRanged : public CProperty {
public:
    CVCDPropertyRanged(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber,
                       const GUID& elementId);
    std::int32_t getValue(char* message, char* value) override;
    // Takes what lies within the limits, both included, unless the automatic is on.
    std::int32_t setValue(char* message, std::string_view value) override;
    virtual Shown getNumber();
    // The library's result code; a failing one is thrown.
    virtual std::int32_t setNumber(Shown number);

    bool isBound() const noexcept { return static_cast<bool>(m_interface); }

protected:
    Shown limitOf(RangeLimit limit) const;

private:
    DShowLib::smart_com<Interface> m_interface;
    DShowLib::smart_com<DShowLib::IVCDSwitchProperty> m_automatic;
};

// A limit of a ranged setting, read only.
template <class Ranged, RangeLimit limit>
class CVCDPropertyLimit final : public Ranged {
public:
    using Ranged::Ranged;
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
};

// An integer value.
using CVCDPropertyValue = CVCDPropertyRanged<DShowLib::IVCDRangeProperty, LONG, std::int32_t>;
using CVCDPropertyValueMin = CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::minimum>;
using CVCDPropertyValueMax = CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::maximum>;

// A floating-point value in the camera's own unit.
using CVCDPropertyAbsValue =
    CVCDPropertyRanged<DShowLib::IVCDAbsoluteValueProperty, double, double>;
using CVCDPropertyAbsValueMin = CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::minimum>;
using CVCDPropertyAbsValueMax = CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::maximum>;

extern template class CVCDPropertyRanged<DShowLib::IVCDRangeProperty, LONG, std::int32_t>;
extern template class CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::minimum>;
extern template class CVCDPropertyLimit<CVCDPropertyValue, RangeLimit::maximum>;
extern template class CVCDPropertyRanged<DShowLib::IVCDAbsoluteValueProperty, double, double>;
extern template class CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::minimum>;
extern template class CVCDPropertyLimit<CVCDPropertyAbsValue, RangeLimit::maximum>;

// A switch: "true" or "false". Any text but "true" switches off.
class CVCDPropertyAuto final : public CProperty {
public:
    CVCDPropertyAuto(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber,
                     const GUID& elementId);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
    virtual bool getNumber();
    // The library's result code; a failing one is thrown.
    virtual std::int32_t setNumber(bool on);

    bool isBound() const noexcept { return static_cast<bool>(m_switch); }

private:
    DShowLib::smart_com<DShowLib::IVCDSwitchProperty> m_switch;
};

// One of the texts that the camera lists.
class CVCDPropertyMapString final : public CProperty {
public:
    CVCDPropertyMapString(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber,
                          const GUID& elementId);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::smart_com<DShowLib::IVCDMapStringsProperty> m_mapStrings;
};
