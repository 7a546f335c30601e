// SPDX-License-Identifier: MIT
#include "virtual_cameras/properties/property_tree.h"

#include <algorithm>
#include <cmath>

#include "capture/library/property_ids.h"
#include "virtual_cameras/properties/property_objects.h"

namespace virtual_cameras {

namespace {

bool sameName(std::string_view left, std::string_view right) {
    const auto lowered = [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                    : character;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lowered(a) == lowered(b); });
}

// The interface of that kind; null when the element has none.
template <class Kind, class Element>
auto* kindOf(Element& element) {
    decltype(std::get_if<Kind>(&element.interfaces.front().kind)) found = nullptr;
    for (auto& entry : element.interfaces) {
        found = found != nullptr ? found : std::get_if<Kind>(&entry.kind);
    }
    return found;
}

const RigElement* elementCalled(const RigItem& item, std::string_view name) {
    const auto found =
        std::find_if(item.elements.begin(), item.elements.end(),
                     [&](const RigElement& element) { return sameName(element.name, name); });
    return found != item.elements.end() ? &*found : nullptr;
}

double spanOf(const RigRange& range) {
    return static_cast<double>(range.maximum) - range.minimum;
}

// How far a range stands from where the rig put it, as a part of its span.
double shift(const RigElement* now, const RigElement* initial) {
    const RigRange* range = now != nullptr ? kindOf<RigRange>(*now) : nullptr;
    const RigRange* start = initial != nullptr ? kindOf<RigRange>(*initial) : nullptr;
    if (range == nullptr || start == nullptr || range->minimum == range->maximum) {
        return 0.0;
    }
    return (static_cast<double>(range->value) - start->value) / std::abs(spanOf(*range));
}

// The exposure as a factor of where the rig put it.
double exposureFactor(const RigElement* now, const RigElement* initial) {
    const RigAbsolute* absolute = now != nullptr ? kindOf<RigAbsolute>(*now) : nullptr;
    const RigAbsolute* start = initial != nullptr ? kindOf<RigAbsolute>(*initial) : nullptr;
    if (absolute != nullptr && start != nullptr && absolute->value > 0.0 && start->value > 0.0) {
        return absolute->value / start->value;
    }
    constexpr double stops = 8.0;
    return std::exp2(stops * shift(now, initial));
}

void applyItem(const RigItem& now, const RigItem& initial, ToneSettings& tone) {
    constexpr double gainStops = 3.0;
    constexpr double contrastStops = 2.0;
    const RigElement* value = elementCalled(now, "Value");
    const RigElement* start = elementCalled(initial, "Value");
    if (sameName(now.name, "Brightness")) {
        tone.brightness += 255.0 * shift(value, start);
    } else if (sameName(now.name, "Contrast")) {
        tone.contrast *= std::exp2(contrastStops * shift(value, start));
    } else if (sameName(now.name, "Gain")) {
        tone.light *= std::exp2(gainStops * shift(value, start));
    } else if (sameName(now.name, "Exposure")) {
        tone.light *= exposureFactor(value, start);
    } else if (sameName(now.name, "White Balance")) {
        const auto factor = [&](std::string_view element) {
            return 1.0 + shift(elementCalled(now, element), elementCalled(initial, element));
        };
        tone.red *= factor("Red");
        tone.green *= factor("Green");
        tone.blue *= factor("Blue");
    }
}

}  // namespace

CPropertyTree::CPropertyTree(const RigCamera& camera)
    : m_cameraId(virtual_cameras::cameraId(camera)),
      m_initial(camera.items),
      m_items(camera.items),
      m_itemsObject(std::make_unique<CItemsObject>(*this)) {}

CPropertyTree::~CPropertyTree() = default;

void CPropertyTree::release() noexcept {
    if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    }
}

void CPropertyTree::orphan(CWorldLock&) noexcept {
    m_orphaned = true;
    m_answers = false;
}

// In place: the objects hold references to the values.
void CPropertyTree::powerUp(CWorldLock& world) {
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        for (std::size_t j = 0; j < m_items[i].elements.size(); ++j) {
            RigElement& element = m_items[i].elements[j];
            for (std::size_t k = 0; k < element.interfaces.size(); ++k) {
                element.interfaces[k].kind = m_initial[i].elements[j].interfaces[k].kind;
            }
        }
    }
    changed(world);
}

bool CPropertyTree::automaticIsOn(CWorldLock&, const RigItem& item) const {
    return std::any_of(item.elements.begin(), item.elements.end(), [](const RigElement& element) {
        const RigSwitch* toggle = kindOf<RigSwitch>(element);
        return element.identifier == DShowLib::VCDElement_Auto && toggle != nullptr && toggle->on;
    });
}

bool CPropertyTree::triggerIsOn(CWorldLock&) const {
    return std::any_of(m_items.begin(), m_items.end(), [](const RigItem& item) {
        const RigElement* enable =
            sameName(item.name, "Trigger") ? elementCalled(item, "Enable") : nullptr;
        const RigSwitch* toggle = enable != nullptr ? kindOf<RigSwitch>(*enable) : nullptr;
        return toggle != nullptr && toggle->on;
    });
}

void CPropertyTree::setRange(CWorldLock& world, RigElement& element, RigRange& range,
                             std::int32_t value) {
    range.value = value;
    auto* absolute = kindOf<RigAbsolute>(element);
    if (absolute != nullptr && absolute->shared) {
        const double part = (static_cast<double>(value) - range.minimum) / spanOf(range);
        absolute->value = absolute->minimum + (absolute->maximum - absolute->minimum) * part;
    }
    changed(world);
}

void CPropertyTree::setAbsolute(CWorldLock& world, RigElement& element, RigAbsolute& absolute,
                                double value) {
    absolute.value = value;
    auto* range = kindOf<RigRange>(element);
    if (absolute.shared && range != nullptr && absolute.maximum != absolute.minimum) {
        const double part = (value - absolute.minimum) / (absolute.maximum - absolute.minimum);
        range->value =
            static_cast<std::int32_t>(std::lround(range->minimum + spanOf(*range) * part));
    }
    changed(world);
}

void CPropertyTree::setSwitch(CWorldLock& world, RigSwitch& toggle, bool on) {
    toggle.on = on;
    changed(world);
}

void CPropertyTree::setString(CWorldLock& world, RigStrings& strings, std::string value) {
    strings.value = std::move(value);
    changed(world);
}

void CPropertyTree::change(CWorldLock& world, const RigChange& change) {
    RigElement& element = m_items[change.item].elements[change.element];
    auto& kind = element.interfaces[change.interfaceIndex].kind;
    const auto& wanted = change.value.kind;
    if (auto* range = std::get_if<RigRange>(&kind)) {
        setRange(world, element, *range, std::get<RigRange>(wanted).value);
    } else if (auto* absolute = std::get_if<RigAbsolute>(&kind)) {
        setAbsolute(world, element, *absolute, std::get<RigAbsolute>(wanted).value);
    } else if (auto* toggle = std::get_if<RigSwitch>(&kind)) {
        setSwitch(world, *toggle, std::get<RigSwitch>(wanted).on);
    } else if (auto* strings = std::get_if<RigStrings>(&kind)) {
        setString(world, *strings, std::get<RigStrings>(wanted).value);
    }
}

void CPropertyTree::push(CWorldLock& world, RigItem& item, const RigButton& button) {
    ++m_pushes[item.name];
    for (RigElement& element : item.elements) {
        if (button.setsElement.empty() || element.name != button.setsElement) {
            continue;
        }
        if (auto* range = kindOf<RigRange>(element)) {
            setRange(world, element, *range, static_cast<std::int32_t>(button.setsTo));
        } else if (auto* absolute = kindOf<RigAbsolute>(element)) {
            setAbsolute(world, element, *absolute, button.setsTo);
        }
    }
}

std::uint32_t CPropertyTree::pushes(CWorldLock&, std::string_view item) const {
    const auto found = m_pushes.find(item);
    return found != m_pushes.end() ? found->second : 0;
}

ToneSettings CPropertyTree::tone(CWorldLock&) const {
    ToneSettings tone;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        applyItem(m_items[i], m_initial[i], tone);
    }
    return tone;
}

// Trigger mode may have changed, so delivery threads look again.
void CPropertyTree::changed(CWorldLock& world) {
    ++m_version;
    world.wakeAll();
}

}  // namespace virtual_cameras
