// SPDX-License-Identifier: MIT
#include "camhost/view/shown_settings.h"

#include <algorithm>
#include <utility>

#include "camhost/settings/setting_json.h"

namespace camhost {

namespace {

constexpr double pauseOfRounds = 0.5;     // seconds from the start of one to the next
constexpr double longestReading = 0.004;  // at a time

// What moves by itself; limits, lists and choices only move when something is set.
bool isVolatile(const Setting& setting) {
    return setting.type != SettingType::Command && !isReadOnly(keyKind(setting.key));
}

}  // namespace

void CShownSettings::show(CShownCamera& camera) {
    m_camera = &camera;
    m_settings.clear();
    readAll();
}

void CShownSettings::readAll() {
    CSettings& from = m_camera->settings();
    std::vector<std::string> keys = from.keysInOrder();
    const std::vector<std::string> entries = from.listEntries();
    keys.insert(keys.end(), entries.begin(), entries.end());
    std::vector<Setting> settings;
    settings.reserve(keys.size());
    for (const std::string& key : keys) {
        settings.push_back(from.read(key, true));
    }
    for (const std::string& command : from.commands()) {
        settings.push_back(CSettings::command(command));
    }
    if (m_settings.empty() || m_camera->channel().hasDevice()) {
        m_settings = std::move(settings);
    }
    startRound();
}

void CShownSettings::startRound() {
    m_next = 0;
    m_changed = false;
    m_roundAt = m_system.seconds();
}

bool CShownSettings::readOn() {
    const double start = m_system.seconds();
    if (m_next == 0 && start - m_roundAt < pauseOfRounds) {
        return false;
    }
    m_roundAt = m_next == 0 ? start : m_roundAt;
    std::vector<std::pair<Setting*, Setting>> news;
    for (; m_next < m_settings.size() && m_system.seconds() - start < longestReading; ++m_next) {
        Setting& setting = m_settings[m_next];
        if (!isVolatile(setting)) {
            continue;
        }
        Setting now = m_camera->settings().read(setting.key);
        now.choices = setting.choices;
        if (now != setting) {
            news.emplace_back(&setting, std::move(now));
        }
    }
    // One that has just gone answers with empty texts, before a wait tells its loss.
    if (!news.empty() && m_camera->channel().hasDevice()) {
        m_changed = true;
        for (auto& [setting, now] : news) {
            *setting = std::move(now);
        }
    }
    if (m_next < m_settings.size()) {
        return false;
    }
    const bool changed = m_changed;
    m_next = 0;
    m_changed = false;
    return changed;
}

std::string CShownSettings::text(const std::string& key) const {
    const auto found = std::find_if(m_settings.begin(), m_settings.end(),
                                    [&](const Setting& setting) { return setting.key == key; });
    return found == m_settings.end() ? std::string() : found->text;
}

std::string CShownSettings::json() const {
    CJson list = CJson::array();
    for (const Setting& setting : m_settings) {
        CJson json = settingJson(setting);
        json.set("item", itemOfKey(setting.key));
        const bool isGuarded =
            hasLimits(keyKind(setting.key)) || setting.type == SettingType::Command;
        if (const auto automatic = m_camera->settings().automaticOf(setting.key);
            isGuarded && automatic) {
            json.set("automatic", *automatic);
        }
        list.add(std::move(json));
    }
    return list.toText();
}

}  // namespace camhost
