// SPDX-License-Identifier: MIT
// CVideoChannel: the tables of settings and commands, built once per device.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "adapter/video_channel.h"
#include "capture/capture_library.h"
#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "capture/video_formats.h"
#include "properties/camera_features.h"
#include "properties/device_formats.h"
#include "properties/process_store.h"
#include "properties/property_keys.h"

namespace {

// A key to be numbered, and the table that it stands in.
struct FeatureEntry {
    std::string key;
    std::uint32_t isExecute;
};

// All members of a collection with a count and 1-based items, in its order.
// Throws a failing result code; a member that is missing is left out.
template <class Member, class Collection>
std::vector<DShowLib::smart_com<Member>> membersOf(Collection& collection) {
    LONG count = 0;
    throwIfFailed(collection.getCount(&count));
    std::vector<DShowLib::smart_com<Member>> members;
    for (LONG index = 1; index <= count; ++index) {
        DShowLib::smart_com<Member> member;
        throwIfFailed(collection.getItem(index, member.put()));
        if (member) {
            members.push_back(std::move(member));
        }
    }
    return members;
}

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

bool isKnownInterface(const GUID& identifier) {
    constexpr std::array<const GUID*, 5> known = {
        &DShowLib::IID_IVCDRangeProperty, &DShowLib::IID_IVCDSwitchProperty,
        &DShowLib::IID_IVCDButtonProperty, &DShowLib::IID_IVCDMapStringsProperty,
        &DShowLib::IID_IVCDAbsoluteValueProperty};
    return std::any_of(known.begin(), known.end(),
                       [&identifier](const GUID* id) { return *id == identifier; });
}

}  // namespace

void CVideoChannel::buildPropertyTable() {
    const auto collection = m_grabber.getAvailableVCDProperties();
    if (!collection) {
        return;
    }
    const auto items = membersOf<DShowLib::IVCDPropertyItem>(*collection.get());
    m_properties.clear();
    for (const auto& item : items) {
        for (const auto& element : membersOf<DShowLib::IVCDPropertyElement>(*item.get())) {
            addVCDInterfaces(*item.get(), *element.get());
        }
    }
    addFixedProperties();
    // The keys themselves are not written: the header stands alone.
    ::OutputDebugStringW(L"\n\nAll Properties:\n");
    addListEntries();
}

void CVideoChannel::addVCDInterfaces(DShowLib::IVCDPropertyItem& item,
                                     DShowLib::IVCDPropertyElement& element) {
    for (const auto& each : membersOf<DShowLib::IVCDPropertyInterface>(element)) {
        const std::string itemName = nameOf(item);
        const std::string elementName = nameOf(element);
        const GUID interfaceId = identifierOf(*each.get());
        // Interfaces of any other kind get no key, on purpose.
        if (isKnownInterface(interfaceId)) {
            const GUID itemId = identifierOf(item);
            const GUID elementId = identifierOf(element);
            addVCDInterface(interfaceId, baseKey(itemName, elementName), itemId, elementId);
        }
        ::OutputDebugStringW(L"\n");
    }
}

void CVideoChannel::addVCDInterface(const GUID& interfaceId, std::string_view baseKey,
                                    const GUID& itemId, const GUID& elementId) {
    if (interfaceId == DShowLib::IID_IVCDRangeProperty) {
        addRanged<CVCDPropertyValue, CVCDPropertyValueMin, CVCDPropertyValueMax>(
            baseKey, rangeSuffix, itemId, elementId);
    } else if (interfaceId == DShowLib::IID_IVCDSwitchProperty) {
        addSingle<CVCDPropertyAuto>(baseKey, switchSuffix, itemId, elementId);
    } else if (interfaceId == DShowLib::IID_IVCDButtonProperty) {
        // The name is kept clear of the settings, not of other commands.
        const std::string key = makeUniqueName(baseKey);
        m_executes[key] = makeForProcess<CExecuteOnePush>(itemId, key, m_grabber);
    } else if (interfaceId == DShowLib::IID_IVCDMapStringsProperty) {
        addSingle<CVCDPropertyMapString>(baseKey, stringsSuffix, itemId, elementId);
    } else if (interfaceId == DShowLib::IID_IVCDAbsoluteValueProperty) {
        addRanged<CVCDPropertyAbsValue, CVCDPropertyAbsValueMin, CVCDPropertyAbsValueMax>(
            baseKey, absoluteSuffix, itemId, elementId);
    }
}

template <class Value, class Minimum, class Maximum>
void CVideoChannel::addRanged(std::string_view baseKey, std::string_view suffix, const GUID& itemId,
                              const GUID& elementId) {
    const std::string key = makeUniqueName(std::string(baseKey).append(suffix));
    const std::string minimumKey = std::string(key).append(minimumSuffix);
    const std::string maximumKey = std::string(key).append(maximumSuffix);
    m_properties[key] = makeForProcess<Value>(itemId, key, m_grabber, elementId);
    m_properties[minimumKey] = makeForProcess<Minimum>(itemId, minimumKey, m_grabber, elementId);
    m_properties[maximumKey] = makeForProcess<Maximum>(itemId, maximumKey, m_grabber, elementId);
}

template <class Property>
void CVideoChannel::addSingle(std::string_view baseKey, std::string_view suffix, const GUID& itemId,
                              const GUID& elementId) {
    const std::string key = makeUniqueName(std::string(baseKey).append(suffix));
    m_properties[key] = makeForProcess<Property>(itemId, key, m_grabber, elementId);
}

void CVideoChannel::addFixedProperties() {
    if (m_grabber.isFrameRateListAvailable()) {
        m_properties["framerate"] = makeForProcess<CPropertyFrameRate>("Frame Rate", m_grabber);
    }
    const auto formats = availableVideoFormats(m_grabber);
    if (formats && !formats->empty()) {
        m_properties[std::string(videoFormatKey)] =
            makeForProcess<CPropertyVideoFormat>("Video Format", m_grabber);
        m_properties["videoformats"] =
            makeForProcess<CPropertyVideoFormats>("Video Formats", m_grabber);
        for (std::uint32_t i = 0; i < formats->size(); ++i) {
            const std::string key = numberedKey(videoFormatPrefix, static_cast<std::int32_t>(i));
            m_properties[key] = makeForProcess<CPropertyVideoFormatAt>(key, m_grabber);
        }
    }
    const auto norms = m_grabber.getAvailableVideoNorms_();
    if (norms && !norms->empty()) {
        m_properties["videonorm"] = makeForProcess<CPropertyVideoNorm>("Video Norm", m_grabber);
        m_properties["videonorms"] = makeForProcess<CPropertyVideoNorms>("Video Norms", m_grabber);
    }
    if (m_grabber.isInputChannelAvailableWithCurDev()) {
        m_properties["inputchannel"] =
            makeForProcess<CPropertyInputChannel>("Input Channel", m_grabber);
        m_properties["inputchannels"] =
            makeForProcess<CPropertyInputChannels>("Input Channels", m_grabber);
    }
    m_properties["pixelformat"] = m_pixelFormat;
    m_executes["propertydialog"] =
        makeForProcess<CExecutePropertyDialog>("Property Dialog", m_grabber);
}

void CVideoChannel::addListEntries() {
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

std::string CVideoChannel::makeUniqueName(std::string_view key) const {
    return uniqueKey(key, [this](std::string_view candidate) { return hasProperty(candidate); });
}

CProperty* CVideoChannel::findProperty(std::string_view key) const {
    const auto found = m_properties.find(key);
    return found != m_properties.end() ? found->second : nullptr;
}

CExecute* CVideoChannel::findExecute(std::string_view key) const {
    const auto found = m_executes.find(key);
    return found != m_executes.end() ? found->second : nullptr;
}
