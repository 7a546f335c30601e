// SPDX-License-Identifier: MIT
#include "virtual_cameras/events/event_schedule.h"

#include <utility>

namespace virtual_cameras {

namespace {

// The same numbers on every machine, unlike the standard distributions.
std::uint64_t nextRandom(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
    return mixed ^ mixed >> 31;
}

bool isCallOf(const RigEvent& event, std::string_view operation) {
    return event.trigger == EventTrigger::call && event.operation == operation;
}

const RigFail* failureOf(const RigEvent& event, std::string_view operation) {
    const auto* fail = std::get_if<RigFail>(&event.action);
    return fail != nullptr && fail->operation == operation ? fail : nullptr;
}

}  // namespace

CEventSchedule::CEventSchedule(std::vector<RigEvent> events) : m_events(std::move(events)) {
    for (const RigEvent& event : m_events) {
        m_states.push_back({.random = event.seed, .next = event.first, .end = {}});
    }
}

// Counts the start, and sets the next one.
void CEventSchedule::start(std::size_t index) {
    const RigEvent& event = m_events[index];
    State& state = m_states[index];
    ++state.starts;
    if (event.mostInterval == 0 || state.starts == event.times) {
        state.over = true;
        return;
    }
    const std::uint64_t choices = event.mostInterval - event.leastInterval + 1;
    state.next += event.leastInterval + nextRandom(state.random) % choices;
}

void CEventSchedule::beforeFrame() {
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        State& state = m_states[i];
        if (m_events[i].trigger == EventTrigger::frame && !state.over &&
            state.next == m_frames + 1) {
            ++state.toTake;
            start(i);
        }
    }
}

bool CEventSchedule::concerns(std::string_view operation) const {
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        const bool fails = m_states[i].failures > 0 || m_states[i].failsForEver;
        if ((isCallOf(m_events[i], operation) && !m_states[i].over) ||
            (fails && failureOf(m_events[i], operation) != nullptr)) {
            return true;
        }
    }
    return false;
}

void CEventSchedule::countCall(std::string_view operation) {
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        State& state = m_states[i];
        if (isCallOf(m_events[i], operation) && !state.over && ++state.calls == state.next) {
            ++state.toTake;
            start(i);
        }
    }
}

std::optional<EventTurn> CEventSchedule::takeStarted(std::uint64_t now) {
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        State& state = m_states[i];
        if (state.toTake > 0) {
            --state.toTake;
            if (m_events[i].lasts > 0) {
                state.end = now + m_events[i].lasts;
            }
            return EventTurn{&m_events[i], false};
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> CEventSchedule::timeOf(std::size_t index) const {
    const State& state = m_states[index];
    const bool starts = m_events[index].trigger == EventTrigger::time && !state.over;
    if (!starts) {
        return state.end;
    }
    return state.end && *state.end <= state.next ? state.end : state.next;
}

std::optional<std::uint64_t> CEventSchedule::nextTime() const {
    std::optional<std::uint64_t> first;
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        if (const auto time = timeOf(i); time && (!first || *time < *first)) {
            first = time;
        }
    }
    return first;
}

std::optional<EventTurn> CEventSchedule::takeDue(std::uint64_t until) {
    const std::optional<std::uint64_t> time = nextTime();
    for (std::size_t i = 0; time && *time <= until && i < m_events.size(); ++i) {
        if (timeOf(i) != time) {
            continue;
        }
        State& state = m_states[i];
        if (state.end == time) {
            state.end.reset();
            return EventTurn{&m_events[i], true};
        }
        if (m_events[i].lasts > 0) {
            state.end = *time + m_events[i].lasts;
        }
        start(i);
        return EventTurn{&m_events[i], false};
    }
    return std::nullopt;
}

void CEventSchedule::arm(const RigEvent& event) {
    State& state = m_states[static_cast<std::size_t>(&event - m_events.data())];
    const std::uint32_t count = std::get<RigFail>(event.action).count;
    state.failures += count;
    state.failsForEver = state.failsForEver || count == 0;
}

const RigFail* CEventSchedule::takeFailure(std::string_view operation) {
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        State& state = m_states[i];
        const RigFail* fail = failureOf(m_events[i], operation);
        if (fail == nullptr || (state.failures == 0 && !state.failsForEver)) {
            continue;
        }
        state.failures -= state.failures > 0 ? 1U : 0U;
        return fail;
    }
    return nullptr;
}

}  // namespace virtual_cameras
