// SPDX-License-Identifier: MIT
// What can be told of typed values before the first of them is set: whether the camera
// has the setting, whether it can be set, limits, choices, and the automatic that guards
// it. Portable.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "camhost/settings/assignment.h"
#include "camhost/settings/settings.h"

namespace camhost {

struct ChangeOptions {
    bool manual = false;
    bool raw = false;
    bool dryRun = false;
};

// Command lines that hints begin with, such as "camhost -c 1A2B" and behind it
// "set --manual ".
struct ChangeForms {
    std::string prefix;
    std::string manual = " set --manual ";
};

// Several values in the order in which they will be set: each is seen in the light of
// those before it.
class CValueChecks {
public:
    CValueChecks(CSettings& settings, const ChangeForms& forms, const ChangeOptions& options)
        : m_settings(settings), m_forms(forms), m_options(options) {}

    // The text to hand over. Throws a Failure when the value will be refused.
    std::string checked(const Assignment& assignment);

private:
    void checkAutomatic(const Assignment& assignment, const std::string& key);
    std::string withinChoices(const Assignment& assignment, const Setting& now);

    CSettings& m_settings;
    const ChangeForms& m_forms;
    const ChangeOptions& m_options;
    std::map<std::string, std::string> m_before;  // texts of the values before this one
    bool m_changesFormat = false;                 // one of them may move limits and choices
};

// The refusal of a value that an automatic guards.
Failure automaticOn(const Assignment& assignment, const std::string& automatic,
                    const ChangeForms& forms);

// Whether only the adapter knows what it takes.
bool isLeftToTheAdapter(KeyKind kind);

}  // namespace camhost
