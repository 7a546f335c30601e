// SPDX-License-Identifier: MIT
// The tables of one device: its settings and its commands, each under a text key.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "properties/executables.h"
#include "properties/interface_kinds.h"
#include "properties/property.h"

// Built once, when the device is opened, and never written again: a device that was lost
// and has come back keeps its keys. Host thread.
//
// Keys are matched exactly, in byte order. The objects live to the end of the process;
// the tables only point to them.
class CPropertyTables {
public:
    CPropertyTables() = default;
    CPropertyTables(const CPropertyTables&) = delete;
    CPropertyTables& operator=(const CPropertyTables&) = delete;

    // Fills both tables: what the device itself offers, the fixed keys, and the numbered
    // lists of all keys. A device without a collection of properties gets no key at all.
    // Throws a failing result code of the collection, of its items or elements, as a
    // 32-bit integer. Neither argument is owned.
    void buildPropertyTable(DShowLib::Grabber& grabber, CPropertyPixelFormat& pixelFormat);

    // Null when there is no such key.
    CProperty* findProperty(std::string_view key) const;
    CExecute* findExecute(std::string_view key) const;
    bool hasProperty(std::string_view key) const { return findProperty(key) != nullptr; }
    bool hasExecute(std::string_view key) const { return findExecute(key) != nullptr; }

    // The keys that the host's list of settings shows, in byte order.
    const std::vector<std::string_view>& listedKeys() const noexcept { return m_listedKeys; }

private:
    // One interface of one element of one item.
    struct Feature {
        DShowLib::Grabber& grabber;
        std::string baseKey;
        GUID itemId;
        GUID elementId;
    };

    void addVCDInterfaces(DShowLib::Grabber& grabber, DShowLib::IVCDPropertyItem& item,
                          DShowLib::IVCDPropertyElement& element);

    // What each kind of interface stands for. Overloads, so that a kind without one does
    // not compile.
    void add(const InterfaceKind<DShowLib::IVCDRangeProperty>& kind, const Feature& feature);
    void add(const InterfaceKind<DShowLib::IVCDSwitchProperty>& kind, const Feature& feature);
    void add(const InterfaceKind<DShowLib::IVCDButtonProperty>& kind, const Feature& feature);
    void add(const InterfaceKind<DShowLib::IVCDMapStringsProperty>& kind, const Feature& feature);
    void add(const InterfaceKind<DShowLib::IVCDAbsoluteValueProperty>& kind,
             const Feature& feature);
    template <class Property>
    void addFeature(const std::string& key, const Feature& feature);
    template <class Value, class Minimum, class Maximum>
    void addRanged(std::string_view suffix, const Feature& feature);

    void addFixedProperties(DShowLib::Grabber& grabber, CPropertyPixelFormat& pixelFormat);
    void addFormats(DShowLib::Grabber& grabber);
    void addListEntries();

    std::string makeUniqueName(std::string_view key) const;

    std::map<std::string, CProperty*, std::less<>> m_properties;
    std::map<std::string, CExecute*, std::less<>> m_executes;
    // Into the keys of m_properties.
    std::vector<std::string_view> m_listedKeys;
};
