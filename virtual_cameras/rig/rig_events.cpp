// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_events.h"

#include <string>
#include <string_view>

#include "virtual_cameras/rig/rig_actions.h"
#include "virtual_cameras/rig/rig_event_values.h"

namespace virtual_cameras {

namespace {

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
