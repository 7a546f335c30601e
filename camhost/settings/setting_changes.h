// SPDX-License-Identifier: MIT
// Changing settings with checks before and a read-back after, for every command
// that sets something. Portable.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "camhost/base/report.h"
#include "camhost/camera/record_channel.h"
#include "camhost/settings/assignment.h"
#include "camhost/settings/settings.h"

namespace camhost {

struct ChangeOptions {
    bool manual = false;
    bool raw = false;
    bool dryRun = false;
};

struct Change {
    std::string key;
    std::string asked;
    std::string before;
    std::string after;
    bool matches = true;
};

class CSettingChanges {
public:
    // The prefix is what a pasted hint must start with, such as "camhost -c 1A2B".
    CSettingChanges(CRecordChannel& channel, CSettings& settings, CReport& report,
                    std::string hintPrefix);

    // "key: old -> new" among the messages instead of the results.
    void showAsMessages() { m_asMessages = true; }

    // The text that would be handed over. Throws when the value can't be meant.
    std::string checked(const Assignment& assignment, bool raw);

    // Sets, reads back and reports "key: old -> new". Throws when refused.
    void apply(const Assignment& assignment, const ChangeOptions& options);
    // The same without checks and without a line for what stays as it is.
    void applyText(const std::string& key, const std::string& text);

    const std::vector<Change>& changes() const { return m_changes; }
    bool allMatch() const;
    CJson json() const;

private:
    void switchOffAutomatic(const std::string& key, const ChangeOptions& options);
    Failure refusal(const std::string& key, const Reply& reply);
    void note(Change change, bool dryRun);

    CRecordChannel& m_channel;
    CSettings& m_settings;
    CReport& m_report;
    std::string m_hintPrefix;
    std::vector<Change> m_changes;
    bool m_asMessages = false;
};

}  // namespace camhost
