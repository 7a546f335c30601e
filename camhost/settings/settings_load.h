// SPDX-License-Identifier: MIT
// Makes a camera's settings those of a list, in a safe order, where they differ. The
// automatic of a value that differs goes off first, and is what the list says at the end.
// Portable.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "camhost/base/report.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings.h"
#include "camhost/settings/settings_file.h"

namespace camhost {

class CSettingsLoad {
public:
    CSettingsLoad(CReport& report, CSettings& settings, CSettingChanges& changes)
        : m_report(report), m_settings(settings), m_changes(changes) {}

    struct Problem {
        std::string key;
        std::string message;
    };

    // What is refused is a warning.
    void run(const SettingsFile& file);
    // The same, one by one.
    const std::vector<Problem>& problems() const { return m_problems; }

private:
    bool differs(const std::string& key, const std::string& text);
    void switchAutomaticOff(const std::string& key);
    void setIfDifferent(const std::string& key, const std::string& text);
    void problem(const std::string& key, const std::string& text);

    CReport& m_report;
    CSettings& m_settings;
    CSettingChanges& m_changes;
    std::set<std::string> m_switchedOff;
    std::vector<Problem> m_problems;
};

}  // namespace camhost
