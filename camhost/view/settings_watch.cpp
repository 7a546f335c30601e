// SPDX-License-Identifier: MIT
#include "camhost/view/settings_watch.h"

#include <algorithm>

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

void CSettingsWatch::show(CSettings& settings) {
    m_shown = &settings;
    readAll();
}

void CSettingsWatch::readAll() {
    std::vector<std::string> keys = m_shown->keysInOrder();
    const std::vector<std::string> entries = m_shown->listEntries();
    keys.insert(keys.end(), entries.begin(), entries.end());
    m_settings.clear();
    for (const std::string& key : keys) {
        m_settings.push_back(m_shown->read(key, true));
    }
    for (const std::string& command : m_shown->commands()) {
        m_settings.push_back(CSettings::command(command));
    }
    startRound();
}

void CSettingsWatch::startRound() {
    m_next = 0;
    m_changed = false;
    m_roundAt = m_system.seconds();
}

bool CSettingsWatch::readOn() {
    const double start = m_system.seconds();
    if (m_next == 0 && start - m_roundAt < pauseOfRounds) {
        return false;
    }
    m_roundAt = m_next == 0 ? start : m_roundAt;
    for (; m_next < m_settings.size() && m_system.seconds() - start < longestReading; ++m_next) {
        Setting& setting = m_settings[m_next];
        if (!isVolatile(setting)) {
            continue;
        }
        Setting now = m_shown->read(setting.key);
        now.choices = setting.choices;
        m_changed = m_changed || now != setting;
        setting = std::move(now);
    }
    if (m_next < m_settings.size()) {
        return false;
    }
    const bool changed = m_changed;
    m_next = 0;
    m_changed = false;
    return changed;
}

std::string CSettingsWatch::text(const std::string& key) const {
    const auto found = std::find_if(m_settings.begin(), m_settings.end(),
                                    [&](const Setting& setting) { return setting.key == key; });
    return found == m_settings.end() ? std::string() : found->text;
}

std::string CSettingsWatch::json() const {
    CJson list = CJson::array();
    for (const Setting& setting : m_settings) {
        CJson json = settingJson(setting);
        json.set("item", itemOfKey(setting.key));
        const bool isGuarded =
            hasLimits(keyKind(setting.key)) || setting.type == SettingType::Command;
        if (const auto automatic = m_shown->automaticOf(setting.key); isGuarded && automatic) {
            json.set("automatic", *automatic);
        }
        list.add(std::move(json));
    }
    return list.toText();
}

}  // namespace camhost
