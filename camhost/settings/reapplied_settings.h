// SPDX-License-Identifier: MIT
// The settings of a camera that may be lost and come back as after power-up: those that
// this run made, and the others as they were read last. Portable.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings.h"
#include "camhost/settings/settings_file.h"
#include "camhost/settings/settings_watch.h"

namespace camhost {

class CReappliedSettings {
public:
    // "made" are the changes of this run.
    CReappliedSettings(CRecordChannel& camera, CSettings& settings, CSystem& system,
                       CReport& report, std::string hintPrefix, std::vector<Change> made);

    // Reads a little of what is in force; between waits, while the camera is there.
    void keep() { m_watch.step(); }
    // Writes what differs. What is refused is a warning. Live video is stopped meanwhile
    // where a setting wants that; throws a Failure when it does not start again.
    void writeAgain();
    // Whether what this run set is other than it was left: a loss that the adapter mended
    // within one wait goes untold. What an automatic governs tells nothing.
    bool wasReset();
    // What was written, of all losses.
    CJson json() const { return m_changes.json(); }

private:
    SettingsFile remembered();
    bool wantsStop(const SettingsFile& file);
    void noteHeld();

    CRecordChannel& m_camera;
    CSettings& m_settings;
    CReport& m_report;
    CSettingsWatch m_watch;
    std::vector<Change> m_made;
    std::map<std::string, std::string> m_held;  // of these, as they were left
    CSettingChanges m_changes;
};

}  // namespace camhost
