// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_actions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <variant>

#include "virtual_cameras/rig/rig_event_values.h"

namespace virtual_cameras {

namespace {

std::vector<std::string_view> formatsOf(const RigCamera& camera) {
    std::vector<std::string_view> names;
    const auto add = [&](const std::optional<std::vector<RigFormat>>& formats) {
        for (std::size_t i = 0; formats && i < formats->size(); ++i) {
            names.push_back((*formats)[i].name);
        }
    };
    add(camera.formats);
    for (std::size_t i = 0; camera.norms && i < camera.norms->size(); ++i) {
        add((*camera.norms)[i].formats);
    }
    return names;
}

RigPlug readComingBack(const EventPlace& place) {
    RigPlug plug;
    if (const toml::node* format = place.table.find("format")) {
        const auto names = formatsOf(place.camera);
        plug.format = names[indexAmong(names, *format, "format")];
    }
    if (const toml::node* serial = place.table.find("serial")) {
        plug.serial = serialOf(*serial);
    }
    if (const toml::node* position = place.table.find("place")) {
        plug.place = static_cast<std::size_t>(countOf(*position, "place", 1));
        if (plug.place > place.cameras) {
            failAt(position->source(), "place must be within 1 and " +
                                           std::to_string(place.cameras) +
                                           ", the number of cameras");
        }
    }
    return plug;
}

RigAction readUnplug(const EventPlace& place) {
    if (!place.has("for")) {
        place.refuse({"format", "serial", "place"}, "\"for\"");
    }
    return RigUnplug{readComingBack(place)};
}

RigAction readPlug(const EventPlace& place) {
    return readComingBack(place);
}

RigAction readStall(const EventPlace&) {
    return RigStall{};
}

RigAction readDrop(const EventPlace& place) {
    const toml::node* frames = place.table.find("frames");
    return RigDrop{frames != nullptr ? static_cast<std::uint32_t>(countOf(*frames, "frames", 1))
                                     : 1U};
}

RigAction readSlow(const EventPlace& place) {
    return RigSlow{rateOf(place.needed("rate"))};
}

std::int32_t failingCode(const toml::node& node) {
    const auto* value = node.as_integer();
    constexpr std::int64_t firstFailing = 0x80000000;
    if (value == nullptr || value->get() < firstFailing ||
        value->get() > std::numeric_limits<std::uint32_t>::max()) {
        failAt(node.source(), "code must be a failing result code, such as 0x80004005");
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value->get()));
}

RigAction readFail(const EventPlace& place) {
    RigFail fail;
    const bool atCall = place.event.trigger == EventTrigger::call && !place.has("operation");
    fail.operation =
        atCall ? place.event.operation : operationOf(place.needed("operation"), "operation");
    if (const toml::node* count = place.table.find("count")) {
        fail.count = static_cast<std::uint32_t>(countOf(*count, "count", 0));
    }
    if (const toml::node* how = place.table.find("with")) {
        constexpr FailBehaviour behaviours[] = {FailBehaviour::answersFalse,
                                                FailBehaviour::answersCode, FailBehaviour::throws,
                                                FailBehaviour::answersEmpty};
        fail.how = behaviours[indexAmong({"false", "code", "throw", "empty"}, *how, "with")];
    }
    if (fail.how == FailBehaviour::answersCode) {
        fail.code = failingCode(place.needed("code"));
    } else {
        place.refuse({"code"}, "with = \"code\"");
    }
    fail.text = place.table.text("text", "The device does not answer.");
    return fail;
}

// At a rate is every so often.
RigAction readTrigger(const EventPlace& place) {
    if (const toml::node* node = place.table.find("rate")) {
        place.refuse({"every"}, "a trigger without \"rate\"");
        const auto period =
            static_cast<std::uint64_t>(std::llround(nanosecondsPerSecond / rateOf(*node)));
        place.event.first = place.has("time") ? place.event.first : period;
        place.event.leastInterval = period;
        place.event.mostInterval = period;
    } else {
        place.needed("time");
    }
    place.refuse({"frame", "call"}, "other events; a trigger goes by time");
    return RigTrigger{};
}

template <class Number>
void requireWithin(const toml::node& node, std::string_view what, Number value, Number first,
                   Number second, const std::string& limits) {
    if (!(value >= std::min(first, second)) || value > std::max(first, second)) {
        failAt(node.source(), std::string(what) + " must be within " + limits);
    }
}

// The new value of an interface; false when `key` does not mean its kind.
bool readValue(const EventPlace& place, std::string_view key, RigInterface& value) {
    const toml::node& node = *place.table.find(key);
    if (auto* range = std::get_if<RigRange>(&value.kind); range && key == "range") {
        const std::int64_t wanted = place.table.integer(key, 0);
        requireWithin<std::int64_t>(
            node, key, wanted, range->minimum, range->maximum,
            std::to_string(range->minimum) + " and " + std::to_string(range->maximum));
        range->value = static_cast<std::int32_t>(wanted);
        return true;
    }
    if (auto* absolute = std::get_if<RigAbsolute>(&value.kind); absolute && key == "abs") {
        absolute->value = numberOf(node, key);
        requireWithin(node, key, absolute->value, absolute->minimum, absolute->maximum,
                      "the limits of the element");
        return true;
    }
    if (auto* toggle = std::get_if<RigSwitch>(&value.kind); toggle && key == "switch") {
        toggle->on = flagOf(node, key);
        return true;
    }
    if (auto* strings = std::get_if<RigStrings>(&value.kind); strings && key == "strings") {
        const std::vector<std::string_view> names(strings->choices.begin(), strings->choices.end());
        strings->value = strings->choices[indexAmong(names, node, key)];
        return true;
    }
    return false;
}

constexpr std::string_view valueKeys[] = {"range", "abs", "switch", "strings"};

RigAction readChange(const EventPlace& place) {
    RigChange change;
    const auto& items = place.camera.items;
    change.item = indexAmong(namesOf(items), place.needed("item"), "item");
    const auto& elements = items[change.item].elements;
    const auto names = namesOf(elements);
    const auto usual = std::find(names.begin(), names.end(), "Value");
    change.element = usual == names.end() || place.has("element")
                         ? indexAmong(names, place.needed("element"), "element")
                         : static_cast<std::size_t>(usual - names.begin());
    const auto& interfaces = elements[change.element].interfaces;
    for (const std::string_view key : valueKeys) {
        if (!place.has(key)) {
            continue;
        }
        for (change.interfaceIndex = 0; change.interfaceIndex < interfaces.size();
             ++change.interfaceIndex) {
            change.value = interfaces[change.interfaceIndex];
            if (readValue(place, key, change.value)) {
                return change;
            }
        }
        failAt(place.table.find(key)->source(),
               "element \"" + elements[change.element].name + "\" has no " + std::string(key));
    }
    failAt(place.table.place(), "event needs one of: range, abs, switch, strings");
}

}  // namespace

const toml::node& EventPlace::needed(std::string_view key) const {
    const toml::node* node = table.find(key);
    if (node == nullptr) {
        failAt(table.place(), "event needs \"" + std::string(key) + '"');
    }
    return *node;
}

void EventPlace::refuse(std::initializer_list<std::string_view> keys,
                        const std::string& why) const {
    for (const std::string_view key : keys) {
        if (const toml::node* node = table.find(key)) {
            failAt(node->source(), std::string(key) + " goes with " + why);
        }
    }
}

const std::vector<EventKind>& eventKinds() {
    static const std::vector<EventKind> kinds = {
        {"unplug", true, {"format", "serial", "place"}, readUnplug},
        {"plug", false, {"format", "serial", "place"}, readPlug},
        {"stall", true, {}, readStall},
        {"drop", false, {"frames"}, readDrop},
        {"slow", true, {"rate"}, readSlow},
        {"fail", false, {"operation", "count", "with", "code", "text"}, readFail},
        {"trigger", false, {"rate"}, readTrigger},
        {"change", false, {"item", "element", "range", "abs", "switch", "strings"}, readChange}};
    return kinds;
}

}  // namespace virtual_cameras
