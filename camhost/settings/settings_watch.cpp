// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_watch.h"

#include "camhost/camera/adapter_call.h"

namespace camhost {

namespace {

constexpr double betweenRounds = 0.5;  // seconds from the begin of one to that of the next
constexpr double mostAtOnce = 0.002;   // seconds of reading between two waits

}  // namespace

CSettingsWatch::CSettingsWatch(CRecordChannel& camera, CSystem& system,
                               const std::vector<std::string>& keys)
    : m_camera(camera), m_system(system) {
    for (const std::string& key : keys) {
        if (auto text = read(key)) {
            m_settings.push_back({key, std::move(*text)});
        }
    }
    m_next = m_settings.size();
    m_roundBegan = system.seconds();
}

std::optional<std::string> CSettingsWatch::read(const std::string& key) {
    try {
        std::string text;
        if (m_camera.getValue(key, text).done()) {
            return text;
        }
    } catch (const AdapterFailure&) {
        return std::nullopt;
    }
    return std::nullopt;
}

std::vector<SettingMove> CSettingsWatch::step() {
    std::vector<SettingMove> moves;
    const double began = m_system.seconds();
    if (m_next == m_settings.size()) {
        if (began - m_roundBegan < betweenRounds) {
            return moves;
        }
        m_next = 0;
        m_roundBegan = began;
    }
    while (m_next < m_settings.size() && m_system.seconds() - began < mostAtOnce) {
        WatchedSetting& setting = m_settings[m_next++];
        if (const auto text = read(setting.key); text && *text != setting.text) {
            moves.push_back({setting.key, setting.text, *text});
            setting.text = *text;
        }
    }
    return moves;
}

}  // namespace camhost
