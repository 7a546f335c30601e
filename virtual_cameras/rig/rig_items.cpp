// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_items.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "capture/library/property_ids.h"
#include "virtual_cameras/number_text.h"
#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

namespace {

struct KnownName {
    std::string_view name;
    const GUID& identifier;
};

constexpr KnownName knownItems[] = {{"Brightness", DShowLib::VCDID_Brightness},
                                    {"Contrast", DShowLib::VCDID_Contrast}};
constexpr KnownName knownElements[] = {{"Value", DShowLib::VCDElement_Value},
                                       {"Auto", DShowLib::VCDElement_Auto},
                                       {"One Push", DShowLib::VCDElement_OnePush}};

template <std::size_t size>
GUID usualIdentifier(const KnownName (&known)[size], std::string_view kind,
                     const std::string& name) {
    const auto found = std::find_if(std::begin(known), std::end(known),
                                    [&](const KnownName& entry) { return entry.name == name; });
    return found != std::end(known) ? found->identifier
                                    : madeUpIdentifier(std::string(kind) + name);
}

GUID identifierOr(const toml::node* node, const GUID& otherwise) {
    if (node == nullptr) {
        return otherwise;
    }
    const auto identifier = parseIdentifier(textOf(*node, "an identifier"));
    if (!identifier) {
        failAt(node->source(),
               "an identifier is written \"{00000000-0000-0000-0000-000000000000}\"");
    }
    return *identifier;
}

// Limits may be reversed. Where they are one, a camera may report any value beside them.
template <class Value>
void checkWithin(CStrictTable& table, Value low, Value high, Value value) {
    if (low != high && !(std::min(low, high) <= value && value <= std::max(low, high))) {
        failAt(table.find("value")->source(),
               "value must be within " + numberText(low) + " and " + numberText(high));
    }
}

RigRange readRange(const toml::node& node) {
    CStrictTable table(node, "range");
    RigRange range;
    range.minimum = table.neededInteger("min");
    range.maximum = table.neededInteger("max");
    range.value = table.neededInteger("value");
    table.finish();
    checkWithin(table, range.minimum, range.maximum, range.value);
    return range;
}

RigAbsolute readAbsolute(const toml::node& node) {
    CStrictTable table(node, "abs");
    RigAbsolute absolute;
    absolute.minimum = table.neededNumber("min");
    absolute.maximum = table.neededNumber("max");
    absolute.shared = table.flag("shared", false);
    absolute.value =
        absolute.shared ? table.number("value", absolute.minimum) : table.neededNumber("value");
    table.finish();
    if (!absolute.shared) {
        checkWithin(table, absolute.minimum, absolute.maximum, absolute.value);
    }
    return absolute;
}

RigButton readButton(const toml::node& node) {
    RigButton button;
    if (node.is_table()) {
        CStrictTable table(node, "button");
        button.setsElement = table.neededText("sets");
        button.setsTo = table.neededNumber("to");
        table.finish();
    } else if (!flagOf(node, "button")) {
        failAt(node.source(), "button must be true, or a table with \"sets\" and \"to\"");
    }
    return button;
}

RigStrings readStrings(const toml::node& node) {
    CStrictTable table(node, "strings");
    RigStrings strings;
    if (const toml::node* choices = table.find("choices")) {
        for (const toml::node& choice : arrayOf(*choices, "choices")) {
            strings.choices.push_back(textOf(choice, "a choice"));
        }
    }
    strings.value = table.text("value", strings.choices.empty() ? "" : strings.choices.front());
    table.finish();
    return strings;
}

GUID readUnknown(const toml::node& node) {
    return identifierOr(node.is_string() ? &node : nullptr, madeUpIdentifier("interface:unknown"));
}

// The interfaces of an element, by their keys.
struct InterfaceKey {
    std::string_view key;
    RigInterface (*read)(const toml::node& node);
};
constexpr InterfaceKey interfaceKeys[] = {
    {"range",
     [](const toml::node& node) -> RigInterface {
         return {DShowLib::IID_IVCDRangeProperty, readRange(node)};
     }},
    {"abs",
     [](const toml::node& node) -> RigInterface {
         return {DShowLib::IID_IVCDAbsoluteValueProperty, readAbsolute(node)};
     }},
    {"switch",
     [](const toml::node& node) -> RigInterface {
         return {DShowLib::IID_IVCDSwitchProperty, RigSwitch{flagOf(node, "switch")}};
     }},
    {"button",
     [](const toml::node& node) -> RigInterface {
         return {DShowLib::IID_IVCDButtonProperty, readButton(node)};
     }},
    {"strings",
     [](const toml::node& node) -> RigInterface {
         return {DShowLib::IID_IVCDMapStringsProperty, readStrings(node)};
     }},
    {"unknown", [](const toml::node& node) -> RigInterface {
         return {readUnknown(node), RigUnknown{}};
     }}};

RigInterface readInterface(const CStrictTable& table, const CStrictTable::Entry& entry) {
    const auto known =
        std::find_if(std::begin(interfaceKeys), std::end(interfaceKeys),
                     [&](const InterfaceKey& candidate) { return candidate.key == entry.key; });
    if (known == std::end(interfaceKeys)) {
        table.failUnknown(entry);
    }
    return known->read(*entry.node);
}

// A shared absolute value follows the range of its element from the start.
void shareQuantity(RigElement& element, const toml::source_region& place) {
    const RigRange* range = nullptr;
    RigAbsolute* shared = nullptr;
    for (RigInterface& entry : element.interfaces) {
        if (const auto* found = std::get_if<RigRange>(&entry.kind)) {
            range = found;
        }
        if (auto* found = std::get_if<RigAbsolute>(&entry.kind); found && found->shared) {
            shared = found;
        }
    }
    if (shared == nullptr) {
        return;
    }
    if (range == nullptr || range->minimum == range->maximum) {
        failAt(place, "a shared abs needs a range with two limits beside it");
    }
    shared->value = shared->minimum + (shared->maximum - shared->minimum) *
                                          (static_cast<double>(range->value) - range->minimum) /
                                          (static_cast<double>(range->maximum) - range->minimum);
}

RigElement readElement(CStrictTable table, std::string name) {
    RigElement element{std::move(name), noIdentifier, {}};
    element.identifier =
        identifierOr(table.find("id"), usualIdentifier(knownElements, "element:", element.name));
    const auto entries = table.rest();
    for (const InterfaceKey& known : interfaceKeys) {
        table.find(known.key);
    }
    for (const CStrictTable::Entry& entry : entries) {
        element.interfaces.push_back(readInterface(table, entry));
    }
    table.requireNeeded();
    shareQuantity(element, table.place());
    return element;
}

RigItem readItem(const toml::node& node) {
    CStrictTable table(node, "item");
    RigItem item{table.neededText("name"), noIdentifier, {}};
    item.identifier =
        identifierOr(table.find("id"), usualIdentifier(knownItems, "item:", item.name));
    const toml::node* elements = table.find("element");
    for (const CStrictTable::Entry& entry : table.rest()) {
        if (!entry.node->is_table()) {
            table.failUnknown(entry);
        }
        const std::string what = "element \"" + std::string(entry.key) + "\"";
        item.elements.push_back(
            readElement(CStrictTable(*entry.node, what), std::string(entry.key)));
    }
    if (elements != nullptr) {
        for (const toml::node& element : arrayOf(*elements, "element")) {
            CStrictTable elementTable(element, "element");
            std::string name = elementTable.neededText("name");
            item.elements.push_back(readElement(std::move(elementTable), std::move(name)));
        }
    }
    table.requireNeeded();
    return item;
}

// Items that share a name must still be told apart by their identifier.
void separateIdentifiers(std::vector<RigItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        const GUID made = usualIdentifier(knownItems, "item:", items[i].name);
        const auto sameName =
            std::count_if(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(i),
                          [&](const RigItem& other) { return other.name == items[i].name; });
        if (sameName > 0 && items[i].identifier == made) {
            items[i].identifier =
                madeUpIdentifier("item:" + items[i].name + "#" + std::to_string(sameName + 1));
        }
    }
}

}  // namespace

std::vector<RigItem> readItems(const toml::node& node) {
    std::vector<RigItem> items;
    for (const toml::node& item : arrayOf(node, "item")) {
        items.push_back(readItem(item));
    }
    separateIdentifiers(items);
    return items;
}

}  // namespace virtual_cameras
