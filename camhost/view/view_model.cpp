// SPDX-License-Identifier: MIT
#include "camhost/view/view_model.h"

#include <utility>

namespace camhost {

namespace {

constexpr double pauseOfCounters = 0.5;  // seconds between two versions for them alone
constexpr std::size_t mostEvents = 1000;

}  // namespace

void CViewModel::wake() const {
    if (m_wake) {
        m_wake();
    }
}

void CViewModel::setState(const ViewState& state, double now) {
    {
        const std::lock_guard lock(m_mutex);
        const bool isNew = m_stateVersion == 0 || state.seldom != m_state.seldom;
        const bool counted =
            state.counters != m_toldCounters && now - m_countersAt >= pauseOfCounters;
        m_state = state;
        if (!isNew && !counted) {
            return;
        }
        m_toldCounters = state.counters;
        m_countersAt = now;
        ++m_stateVersion;
    }
    wake();
}

void CViewModel::setSettings(std::int32_t camera, std::string list) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_settingsVersion > 0 && camera == m_settingsCamera && list == m_settings) {
            return;
        }
        m_settingsCamera = camera;
        m_settings = std::move(list);
        ++m_settingsVersion;
        ++m_stateVersion;
    }
    wake();
}

void CViewModel::addEvent(double time, std::string kind, std::string text) {
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back({++m_lastEvent, time, std::move(kind), std::move(text)});
        if (m_events.size() > mostEvents) {
            m_events.pop_front();
        }
        ++m_stateVersion;
    }
    wake();
}

SharedFrame CViewModel::addFrame(std::unique_ptr<ViewFrame> frame) {
    SharedFrame shared = m_frames.add(std::move(frame));
    wake();
    return shared;
}

void CViewModel::end() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    wake();
}

std::optional<std::string> CViewModel::stateText(std::optional<std::uint64_t> after) const {
    const std::lock_guard lock(m_mutex);
    if (after && *after == m_stateVersion) {
        return std::nullopt;
    }
    CJson json = CJson::object({{"version", m_stateVersion},
                                {"readOnly", m_readOnly},
                                {"version_settings", m_settingsVersion},
                                {"events", m_lastEvent},
                                {"cameras", camerasJson(m_cameras)}});
    addState(json, m_state);
    return json.toText();
}

std::optional<std::string> CViewModel::settingsText(std::optional<std::uint64_t> after) const {
    const std::lock_guard lock(m_mutex);
    if (after && *after == m_settingsVersion) {
        return std::nullopt;
    }
    return "{\"version\":" + std::to_string(m_settingsVersion) +
           ",\"camera\":" + std::to_string(m_settingsCamera) + ",\"settings\":" + m_settings + "}";
}

std::optional<std::string> CViewModel::eventsText(std::uint64_t after, bool evenIfNone) const {
    const std::lock_guard lock(m_mutex);
    if (after >= m_lastEvent && !evenIfNone) {
        return std::nullopt;
    }
    CJson events = CJson::array();
    for (const ViewEvent& event : m_events) {
        if (event.number > after) {
            events.add(CJson::object({{"number", event.number},
                                      {"time", event.time},
                                      {"kind", event.kind},
                                      {"text", event.text}}));
        }
    }
    return CJson::object({{"next", m_lastEvent + 1}, {"events", std::move(events)}}).toText();
}

bool CViewModel::isLost(std::int32_t camera) const {
    const std::lock_guard lock(m_mutex);
    return m_state.seldom.camera == camera && m_state.seldom.live == LiveState::Lost;
}

bool CViewModel::hasEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

}  // namespace camhost
