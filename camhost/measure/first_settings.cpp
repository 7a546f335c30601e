// SPDX-License-Identifier: MIT
#include "camhost/measure/first_settings.h"

#include "camhost/settings/assignment.h"

namespace camhost {

std::vector<Change> makeFirstSettings(const FirstSettings& first, CRecordChannel& camera,
                                      CSettings& settings, CReport& report, const RunHints& hints) {
    std::vector<Assignment> assignments;
    if (!first.pixelFormat.empty()) {
        assignments.push_back({"pixelformat", first.pixelFormat});
    }
    const auto more = parseAssignments(first.assignments);
    assignments.insert(assignments.end(), more.begin(), more.end());
    CSettingChanges changes(camera, settings, report, hints.prefix);
    changes.becomeARuns(hints.command);
    changes.applyAll(assignments, {.manual = first.manual});
    return changes.changes();
}

}  // namespace camhost
