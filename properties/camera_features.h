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

// An integer or floating-point interface with its limits, and the switch of the
// item's automatic, which is empty for an item without one.
template <class Interface, class Number>
class CRangedBinding {
public:
    CRangedBinding(const GUID& itemId, DShowLib::Grabber& grabber, const GUID& elementId);

    bool isBound() const noexcept { return static_cast<bool>(m_interface); }
    Number value() const;
    Number lowerLimit() const;
    Number upperLimit() const;
    std::int32_t write(Number value) const;

    // Writes a value within the limits, both included, unless the automatic is on.
    std::int32_t set(char* message, std::string_view name, std::string_view value) const;

private:
    DShowLib::smart_com<Interface> m_interface;
    DShowLib::smart_com<DShowLib::IVCDSwitchProperty> m_automatic;
};

using CIntegerBinding = CRangedBinding<DShowLib::IVCDRangeProperty, LONG>;
using CAbsoluteBinding = CRangedBinding<DShowLib::IVCDAbsoluteValueProperty, double>;

// An integer value.
class CVCDPropertyValue : public CProperty {
public:
    CVCDPropertyValue(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber,
                      const GUID& elementId);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
    virtual std::int32_t getNumber();
    // The library's result code; a failing one is thrown.
    virtual std::int32_t setNumber(std::int32_t number);

    bool isBound() const noexcept { return m_binding.isBound(); }

protected:
    CIntegerBinding m_binding;
};

// Its limits, read only.
class CVCDPropertyValueMin final : public CVCDPropertyValue {
public:
    using CVCDPropertyValue::CVCDPropertyValue;
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
};

class CVCDPropertyValueMax final : public CVCDPropertyValue {
public:
    using CVCDPropertyValue::CVCDPropertyValue;
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
};

// A floating-point value in the camera's own unit.
class CVCDPropertyAbsValue : public CProperty {
public:
    CVCDPropertyAbsValue(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber,
                         const GUID& elementId);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
    virtual double getNumber();
    // The library's result code; a failing one is thrown.
    virtual std::int32_t setNumber(double number);

    bool isBound() const noexcept { return m_binding.isBound(); }

protected:
    CAbsoluteBinding m_binding;
};

// Its limits, read only.
class CVCDPropertyAbsValueMin final : public CVCDPropertyAbsValue {
public:
    using CVCDPropertyAbsValue::CVCDPropertyAbsValue;
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
};

class CVCDPropertyAbsValueMax final : public CVCDPropertyAbsValue {
public:
    using CVCDPropertyAbsValue::CVCDPropertyAbsValue;
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;
};

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
