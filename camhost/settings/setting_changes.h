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
#include "camhost/settings/value_checks.h"

namespace camhost {

enum class ChangeKind { Done, DryRun, PutBack };

struct Change {
    std::string key;
    std::string asked;
    std::string before;
    std::string after;
    bool matches = true;
    ChangeKind kind = ChangeKind::Done;
};

class CSettingChanges {
public:
    // The prefix is what a pasted hint must start with, such as "camhost -c 1A2B".
    CSettingChanges(CRecordChannel& channel, CSettings& settings, CReport& report,
                    std::string hintPrefix);

    // The changes are those of a command that runs on, such as "grab": "key: old -> new"
    // goes among the messages instead of the results, and hints are of that command.
    void becomeARuns(const std::string& command);

    // Checks all, then sets one after the other, each with a read-back and "key: old ->
    // new". Throws what is refused; what was set before that is put back.
    void applyAll(const std::vector<Assignment>& assignments, const ChangeOptions& options);
    // One, without checks.
    void applyText(const std::string& key, const std::string& text);

    const std::vector<Change>& changes() const { return m_changes; }
    bool allMatch() const;
    CJson json() const;

private:
    void apply(const Assignment& assignment, const ChangeOptions& options);
    void showOnly(const Assignment& assignment, const ChangeOptions& options);
    void putBack();
    void putBack(const Change& change);
    bool isNoted(const std::string& key) const;
    Failure refusal(const Assignment& assignment, const Reply& reply);
    void note(Change change);

    CRecordChannel& m_channel;
    CSettings& m_settings;
    CReport& m_report;
    ChangeForms m_forms;
    std::vector<Change> m_changes;
    bool m_asMessages = false;
};

}  // namespace camhost
