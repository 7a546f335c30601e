// SPDX-License-Identifier: MIT
// camhost set: changes settings one after the other, each with a read-back.
#include "host/commands.h"
#include "host/setting_changes.h"

namespace camhost {

namespace {

void applyAll(CSettingChanges& changes, const Options& options) {
    std::vector<Assignment> assignments;
    for (const std::string& argument : options.arguments) {
        assignments.push_back(parseAssignment(argument));
        changes.checked(assignments.back(), options.raw);
    }
    for (const Assignment& assignment : assignments) {
        changes.apply(assignment, {options.manual, options.raw, options.dryRun});
    }
}

}  // namespace

// All values are checked before the first is set; the first refusal ends it.
ExitCode runSet(CommandContext& context) {
    CSettings settings(*context.camera);
    CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix());
    try {
        applyAll(changes, context.options);
    } catch (const Failure&) {
        context.report.setResult(changes.data());
        throw;
    }
    context.report.setResult(changes.data());
    return context.options.strict && !changes.allMatch() ? ExitCode::Partial : ExitCode::Done;
}

}  // namespace camhost
