// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_load.h"

#include "camhost/base/failure.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

bool isValue(const std::string& key) {
    const KeyKind kind = keyKind(key);
    return kind == KeyKind::Range || kind == KeyKind::Absolute || kind == KeyKind::Strings;
}

}  // namespace

void CSettingsLoad::run(const SettingsFile& file) {
    for (const auto& [key, text] : loadOrder(file)) {
        if (isValue(key) && m_settings.hasKey(key) && differs(key, text)) {
            switchAutomaticOff(key);
        }
        setIfDifferent(key, text);
        m_switchedOff.erase(key);
    }
    // Those that the file does not tell of are what they were.
    for (const std::string& key : m_switchedOff) {
        setIfDifferent(key, "true");
    }
}

bool CSettingsLoad::differs(const std::string& key, const std::string& text) {
    const Setting now = m_settings.read(key);
    return !now.problem.empty() || !sameValue(now.type, text, now.text);
}

void CSettingsLoad::switchAutomaticOff(const std::string& key) {
    if (const auto automatic = m_settings.activeAutomatic(key)) {
        m_switchedOff.insert(*automatic);
        setIfDifferent(*automatic, "false");
    }
}

void CSettingsLoad::setIfDifferent(const std::string& key, const std::string& text) {
    if (!m_settings.hasKey(key)) {
        problem(key, "the camera has no \"" + key + "\"");
        return;
    }
    if (!differs(key, text)) {
        return;
    }
    try {
        m_changes.applyText(key, text);
    } catch (const Failure& failure) {
        problem(key, failure.message);
    }
}

void CSettingsLoad::problem(const std::string& key, const std::string& text) {
    m_report.warning(text);
    m_problems.push_back({key, text});
}

}  // namespace camhost
