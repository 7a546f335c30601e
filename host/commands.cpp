// SPDX-License-Identifier: MIT
#include "host/commands.h"

#include <algorithm>
#include <array>

namespace camhost {

namespace {

constexpr std::array<Command, 13> commands{{
    {"list", runList, false},
    {"info", runInfo, true},
    {"props", runProps, true},
    {"get", runGet, true},
    {"set", runSet, true},
    {"choices", runChoices, true},
    {"commands", runCommands, true},
    {"exec", runExec, true},
    {"params", runParams, true},
    {"save", runSave, true},
    {"load", runLoad, true},
    {"diff", runDiff, true},
    {"grab", runGrab, true},
}};

}  // namespace

const Command* findCommand(std::string_view name) {
    const auto* found = std::find_if(commands.begin(), commands.end(),
                                     [&](const Command& command) { return command.name == name; });
    return found == commands.end() ? nullptr : found;
}

std::string CommandContext::hintPrefix() const {
    std::string prefix = "camhost";
    if (!options.rig.empty()) {
        prefix += " --rig " + options.rig;
    }
    if (!options.camera.empty() && camera != nullptr) {
        prefix += " -c " + camera->selector();
    }
    return prefix;
}

}  // namespace camhost
