// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_watch.h"

#include <utility>

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
    const double began = m_system.seconds();
    if (m_next == m_settings.size()) {
        if (began - m_roundBegan < betweenRounds) {
            return {};
        }
        m_next = 0;
        m_roundBegan = began;
    }
    std::size_t next = m_next;
    std::vector<std::pair<WatchedSetting*, std::string>> news;
    while (next < m_settings.size() && m_system.seconds() - began < mostAtOnce) {
        WatchedSetting& setting = m_settings[next++];
        if (auto text = read(setting.key); text && *text != setting.text) {
            news.emplace_back(&setting, std::move(*text));
        }
    }
    // A camera that goes away meanwhile may leave empty texts.
    if (!news.empty() && !m_camera.hasDevice()) {
        return {};
    }
    m_next = next;
    std::vector<SettingMove> moves;
    for (auto& [setting, text] : news) {
        moves.push_back({setting->key, setting->text, text});
        setting->text = std::move(text);
    }
    return moves;
}

}  // namespace camhost
