// SPDX-License-Identifier: MIT
// The settings that a run over live video makes before it starts. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/base/report.h"
#include "camhost/camera/record_channel.h"
#include "camhost/grab/grab_options.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings.h"

namespace camhost {

struct RunHints {
    std::string prefix;   // what a pasted command line for the same camera starts with
    std::string command;  // behind it
};

// Told as messages, since the result of a run is its totals. Throws what is refused.
std::vector<Change> makeFirstSettings(const FirstSettings& first, CRecordChannel& camera,
                                      CSettings& settings, CReport& report, const RunHints& hints);

}  // namespace camhost
