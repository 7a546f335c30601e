// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_events.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>

#include "virtual_cameras/rig/near_name.h"
#include "virtual_cameras/rig/operations.h"

namespace virtual_cameras {

namespace {

// What the reader of one kind needs to know.
struct EventPlace {
    CStrictTable& table;
    const RigCamera& camera;
    const std::size_t cameras;
    RigEvent& event;  // its start is read already

    bool has(std::string_view key) const { return table.find(key) != nullptr; }
    const toml::node& needed(std::string_view key) const {
        const toml::node* node = table.find(key);
        if (node == nullptr) {
            failAt(table.place(), "event needs \"" + std::string(key) + '"');
        }
        return *node;
    }
    void refuse(std::initializer_list<std::string_view> keys, const std::string& why) const {
        for (const std::string_view key : keys) {
            if (const toml::node* node = table.find(key)) {
                failAt(node->source(), std::string(key) + " goes with " + why);
            }
        }
    }
};

constexpr double nanoseconds = 1e9;
constexpr double longestSeconds = 1e9;
constexpr std::int64_t mostCounted = 1'000'000'000;

// The place of the text, in letters of any case, among `names`.
std::size_t indexAmong(const std::vector<std::string_view>& names, const toml::node& node,
                       std::string_view what) {
    const std::string text = textOf(node, what);
    auto found = std::find(names.begin(), names.end(), text);
    if (found == names.end()) {
        found = std::find_if(names.begin(), names.end(),
                             [&](std::string_view name) { return sameIgnoringCase(name, text); });
    }
    if (found != names.end()) {
        return static_cast<std::size_t>(found - names.begin());
    }
    std::string all;
    for (const std::string_view name : names) {
        all += (all.empty() ? "" : ", ") + std::string(name);
    }
    failAt(node.source(), std::string(what) +
                              (all.empty() ? " has no choices here" : " must be one of: " + all) +
                              meantText(text, names));
}

std::uint64_t countOf(const toml::node& node, std::string_view what, std::int64_t least) {
    const auto* value = node.as_integer();
    if (value == nullptr || value->get() < least || value->get() > mostCounted) {
        failAt(node.source(), std::string(what) + " must be a whole number from " +
                                  std::to_string(least) + " to " + std::to_string(mostCounted));
    }
    return static_cast<std::uint64_t>(value->get());
}

// In nanoseconds.
std::uint64_t secondsOf(const toml::node& node, std::string_view what, double least) {
    const double seconds = numberOf(node, what);
    if (!(seconds >= least) || seconds > longestSeconds) {
        failAt(node.source(),
               std::string(what) + (least > 0.0 ? " must be at least 0.001 seconds"
                                                : " must be a number of seconds from 0"));
    }
    return static_cast<std::uint64_t>(std::llround(seconds * nanoseconds));
}
constexpr double shortestSeconds = 0.001;

double rateOf(const toml::node& node) {
    const double rate = numberOf(node, "rate");
    if (!(rate > 0.0) || rate > 1.0 / shortestSeconds) {
        failAt(node.source(), "rate must be above 0 and at most 1000 per second");
    }
    return rate;
}

std::string operationOf(const toml::node& node, std::string_view what) {
    std::string text = textOf(node, what);
    std::string hint;
    for (const std::string_view operation : operations) {
        if (operation == text) {
            return text;
        }
        // Its member alone is no name, but tells what was meant.
        if (operation.ends_with("::" + text) && hint.empty()) {
            hint = "; did you mean \"" + std::string(operation) + "\"?";
        }
    }
    const std::vector<std::string_view> all(std::begin(operations), std::end(operations));
    failAt(node.source(),
           "there is no operation \"" + text + '"' + (hint.empty() ? meantText(text, all) : hint));
}

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
        const auto period = static_cast<std::uint64_t>(std::llround(nanoseconds / rateOf(*node)));
        place.event.first = place.has("time") ? place.event.first : period;
        place.event.leastInterval = period;
        place.event.mostInterval = period;
    } else {
        place.needed("time");
    }
    place.refuse({"frame", "call"}, "other events; a trigger goes by time");
    return RigTrigger{};
}

template <class Entry>
std::vector<std::string_view> namesOf(const std::vector<Entry>& entries) {
    std::vector<std::string_view> names;
    names.reserve(entries.size());
    for (const Entry& entry : entries) {
        names.push_back(entry.name);
    }
    return names;
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

struct EventKind {
    std::string_view name;
    bool lasts;  // takes "for"
    std::vector<std::string_view> keys;
    RigAction (*read)(const EventPlace& place);
};

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

const EventKind* kindOf(const toml::node& node) {
    const auto* table = node.as_table();
    const toml::node* name = table != nullptr ? table->get("do") : nullptr;
    return name != nullptr ? &eventKinds()[indexAmong(namesOf(eventKinds()), *name, "do")]
                           : nullptr;
}

// Nothing may pass unread, and a mistyped key is told before one that is missing.
CStrictTable knownKeys(const toml::node& node, const EventKind* kind) {
    CStrictTable table(
        node, kind != nullptr ? "event \"" + std::string(kind->name) + '"' : std::string("event"));
    for (const std::string_view key :
         {"for", "do", "frame", "time", "call", "nth", "every", "times", "seed"}) {
        if (kind == nullptr || key != "for" || kind->lasts) {
            table.find(key);
        }
    }
    for (const EventKind& each : eventKinds()) {
        for (const std::string_view key : each.keys) {
            if (kind == nullptr || kind == &each) {
                table.find(key);
            }
        }
    }
    table.finish();
    return table;
}

void readStart(const EventPlace& place) {
    RigEvent& event = place.event;
    int starts = 0;
    if (const toml::node* frame = place.table.find("frame")) {
        event.trigger = EventTrigger::frame;
        event.first = countOf(*frame, "frame", 1);
        ++starts;
    }
    if (const toml::node* time = place.table.find("time")) {
        event.trigger = EventTrigger::time;
        event.first = secondsOf(*time, "time", 0.0);
        ++starts;
    }
    if (const toml::node* call = place.table.find("call")) {
        event.trigger = EventTrigger::call;
        event.operation = operationOf(*call, "call");
        const toml::node* nth = place.table.find("nth");
        event.first = nth != nullptr ? countOf(*nth, "nth", 1) : 1;
        ++starts;
    } else {
        place.refuse({"nth"}, "\"call\"");
    }
    if (starts > 1 || (starts == 0 && !place.has("rate"))) {
        failAt(place.table.place(), "event needs one of: frame, time, call");
    }
}

void readRepetition(const EventPlace& place) {
    RigEvent& event = place.event;
    const toml::node* every = place.table.find("every");
    if (every == nullptr) {
        place.refuse({"seed"}, "\"every\"");
        if (!place.has("rate")) {
            place.refuse({"times"}, "\"every\"");
        }
    } else {
        const auto interval = [&](const toml::node& node) {
            return event.trigger == EventTrigger::time ? secondsOf(node, "every", shortestSeconds)
                                                       : countOf(node, "every", 1);
        };
        const toml::array* limits = every->as_array();
        if (limits != nullptr && limits->size() != 2) {
            failAt(every->source(), "every must be one interval, or the shortest and the longest");
        }
        event.leastInterval = interval(limits != nullptr ? (*limits)[0] : *every);
        event.mostInterval = interval(limits != nullptr ? (*limits)[1] : *every);
        if (event.leastInterval > event.mostInterval) {
            failAt(every->source(), "every must name the shortest interval first");
        }
    }
    if (const toml::node* times = place.table.find("times")) {
        event.times = static_cast<std::uint32_t>(countOf(*times, "times", 1));
    }
    if (const toml::node* seed = place.table.find("seed")) {
        event.seed = static_cast<std::uint32_t>(countOf(*seed, "seed", 0));
    }
}

RigEvent readEvent(const toml::node& node, const RigCamera& camera, std::size_t cameras) {
    const EventKind* kind = kindOf(node);
    CStrictTable table = knownKeys(node, kind);
    if (kind == nullptr) {
        failAt(table.place(), "event needs \"do\"");
    }
    RigEvent event;
    const EventPlace place{table, camera, cameras, event};
    readStart(place);
    readRepetition(place);
    if (const toml::node* lasting = kind->lasts ? table.find("for") : nullptr) {
        event.lasts = secondsOf(*lasting, "for", shortestSeconds);
    }
    event.action = kind->read(place);
    return event;
}

}  // namespace

std::vector<RigEvent> readEvents(const toml::node& node, const RigCamera& camera,
                                 std::size_t cameras) {
    std::vector<RigEvent> events;
    for (const toml::node& event : arrayOf(node, "event")) {
        events.push_back(readEvent(event, camera, cameras));
    }
    return events;
}

}  // namespace virtual_cameras
