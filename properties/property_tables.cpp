// SPDX-License-Identifier: MIT
#include "properties/property_tables.h"

#include <vector>

#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "capture/video_formats.h"
#include "properties/camera_features.h"
#include "properties/collection_members.h"
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "properties/process_store.h"
#include "properties/property_keys.h"

namespace {

// A key to be numbered, and the table that it stands in.
struct FeatureEntry {
    std::string key;
    std::uint32_t isExecute;
};

template <class Named>
std::string nameOf(Named& named) {
    CComText name;
    throwIfFailed(named.getName(name.put()));
    return name.narrow();
}

GUID identifierOf(DShowLib::IVCDPropertyItem& item) {
    GUID identifier{};
    throwIfFailed(item.getItemID(&identifier));
    return identifier;
}

GUID identifierOf(DShowLib::IVCDPropertyElement& element) {
    GUID identifier{};
    throwIfFailed(element.getElementID(&identifier));
    return identifier;
}

GUID identifierOf(DShowLib::IVCDPropertyInterface& propertyInterface) {
    GUID identifier{};
    throwIfFailed(propertyInterface.getInterfaceID(&identifier));
    return identifier;
}

// Has the row of the interface's kind add what it stands for. An interface of any other
// kind gets no key, on purpose.
template <class Visit>
void withKindOf(const GUID& identifier, const Visit& visit) {
    std::apply(
        [&](const auto&... kinds) {
            static_cast<void>(((*kinds.id == identifier && (visit(kinds), true)) || ...));
        },
        interfaceKinds);
}

}  // namespace

void CPropertyTables::buildPropertyTable(DShowLib::Grabber& grabber,
                                         CPropertyPixelFormat& pixelFormat) {
    const auto collection = grabber.getAvailableVCDProperties();
    if (!collection) {
        return;
    }
    const auto items = membersOf<DShowLib::IVCDPropertyItem>(*collection.get());
    m_properties.clear();
    for (const auto& item : items) {
        for (const auto& element : membersOf<DShowLib::IVCDPropertyElement>(*item.get())) {
            addVCDInterfaces(grabber, *item.get(), *element.get());
        }
    }
    addFixedProperties(grabber, pixelFormat);
    // The keys themselves are not written: the header stands alone.
    ::OutputDebugStringW(L"\n\nAll Properties:\n");
    addListEntries();
    for (const auto& [key, property] : m_properties) {
        if (isListedKey(key)) {
            m_listedKeys.emplace_back(key);
        }
    }
}

void CPropertyTables::addVCDInterfaces(DShowLib::Grabber& grabber, DShowLib::IVCDPropertyItem& item,
                                       DShowLib::IVCDPropertyElement& element) {
    for (const auto& each : membersOf<DShowLib::IVCDPropertyInterface>(element)) {
        const std::string itemName = nameOf(item);
        const std::string elementName = nameOf(element);
        withKindOf(identifierOf(*each.get()), [&](const auto& kind) {
            const GUID itemId = identifierOf(item);
            const GUID elementId = identifierOf(element);
            add(kind, {grabber, baseKey(itemName, elementName), itemId, elementId});
        });
        ::OutputDebugStringW(L"\n");
    }
}

void CPropertyTables::add(const InterfaceKind<DShowLib::IVCDRangeProperty>& kind,
                          const Feature& feature) {
    addRanged<CVCDPropertyValue, CVCDPropertyValueMin, CVCDPropertyValueMax>(kind.suffix, feature);
}

void CPropertyTables::add(const InterfaceKind<DShowLib::IVCDSwitchProperty>& kind,
                          const Feature& feature) {
    addFeature<CVCDPropertyAuto>(makeUniqueName(feature.baseKey + std::string(kind.suffix)),
                                 feature);
}

void CPropertyTables::add(const InterfaceKind<DShowLib::IVCDButtonProperty>& kind,
                          const Feature& feature) {
    // The name is kept clear of the settings, not of other commands.
    const std::string key = makeUniqueName(feature.baseKey + std::string(kind.suffix));
    m_executes[key] = makeForProcess<CExecuteOnePush>(feature.itemId, key, feature.grabber);
}

void CPropertyTables::add(const InterfaceKind<DShowLib::IVCDMapStringsProperty>& kind,
                          const Feature& feature) {
    addFeature<CVCDPropertyMapString>(makeUniqueName(feature.baseKey + std::string(kind.suffix)),
                                      feature);
}

void CPropertyTables::add(const InterfaceKind<DShowLib::IVCDAbsoluteValueProperty>& kind,
                          const Feature& feature) {
    addRanged<CVCDPropertyAbsValue, CVCDPropertyAbsValueMin, CVCDPropertyAbsValueMax>(kind.suffix,
                                                                                      feature);
}

template <class Property>
void CPropertyTables::addFeature(const std::string& key, const Feature& feature) {
    m_properties[key] =
        makeForProcess<Property>(feature.itemId, key, feature.grabber, feature.elementId);
}

template <class Value, class Minimum, class Maximum>
void CPropertyTables::addRanged(std::string_view suffix, const Feature& feature) {
    const std::string key = makeUniqueName(feature.baseKey + std::string(suffix));
    addFeature<Value>(key, feature);
    addFeature<Minimum>(key + std::string(minimumSuffix), feature);
    addFeature<Maximum>(key + std::string(maximumSuffix), feature);
}

void CPropertyTables::addFixedProperties(DShowLib::Grabber& grabber,
                                         CPropertyPixelFormat& pixelFormat) {
    if (grabber.isFrameRateListAvailable()) {
        m_properties["framerate"] = makeForProcess<CPropertyFrameRate>("Frame Rate", grabber);
    }
    addFormats(grabber);
    const auto norms = grabber.getAvailableVideoNorms_();
    if (norms && !norms->empty()) {
        m_properties["videonorm"] = makeForProcess<CPropertyVideoNorm>("Video Norm", grabber);
        m_properties["videonorms"] = makeForProcess<CPropertyVideoNorms>("Video Norms", grabber);
    }
    if (grabber.isInputChannelAvailableWithCurDev()) {
        m_properties["inputchannel"] =
            makeForProcess<CPropertyInputChannel>("Input Channel", grabber);
        m_properties["inputchannels"] =
            makeForProcess<CPropertyInputChannels>("Input Channels", grabber);
    }
    m_properties["pixelformat"] = &pixelFormat;
    m_executes["propertydialog"] =
        makeForProcess<CExecutePropertyDialog>("Property Dialog", grabber);
}

void CPropertyTables::addFormats(DShowLib::Grabber& grabber) {
    const auto formats = availableVideoFormats(grabber);
    if (!formats || formats->empty()) {
        return;
    }
    m_properties[std::string(videoFormatKey)] =
        makeForProcess<CPropertyVideoFormat>("Video Format", grabber);
    m_properties["videoformats"] = makeForProcess<CPropertyVideoFormats>("Video Formats", grabber);
    for (std::uint32_t i = 0; i < formats->size(); ++i) {
        const std::string key = numberedKey(videoFormatPrefix, static_cast<std::int32_t>(i));
        m_properties[key] = makeForProcess<CPropertyVideoFormatAt>(key, grabber);
    }
}

void CPropertyTables::addListEntries() {
    // Taken whole before the first entry is added, so that no list names a list.
    std::vector<FeatureEntry> entries;
    for (const auto& [key, property] : m_properties) {
        entries.push_back({key, 0});
    }
    for (const auto& [key, execute] : m_executes) {
        entries.push_back({key, 1});
    }
    const auto add = [this](std::string_view prefix, std::int32_t number, std::string_view value) {
        const std::string key = numberedKey(prefix, number);
        m_properties[key] = makeForProcess<CFeatures>(key, value);
    };
    std::int32_t nextFeature = 1;
    std::int32_t nextExecute = 1;
    for (const FeatureEntry& entry : entries) {
        if (entry.isExecute != 0) {
            add(executePrefix, nextExecute++, entry.key);
        } else {
            add(featurePrefix, nextFeature++, entry.key);
        }
    }
    // An empty value ends each list.
    add(featurePrefix, nextFeature, "");
    add(executePrefix, nextExecute, "");
}

std::string CPropertyTables::makeUniqueName(std::string_view key) const {
    return uniqueKey(key, [this](std::string_view candidate) { return hasProperty(candidate); });
}

CProperty* CPropertyTables::findProperty(std::string_view key) const {
    const auto found = m_properties.find(key);
    return found != m_properties.end() ? found->second : nullptr;
}

CExecute* CPropertyTables::findExecute(std::string_view key) const {
    const auto found = m_executes.find(key);
    return found != m_executes.end() ? found->second : nullptr;
}
