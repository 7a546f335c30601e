// SPDX-License-Identifier: MIT
#include "camhost/settings/actions.h"

#include "camhost/base/texts.h"

namespace camhost {

SettingTexts readTexts(CSettings& settings) {
    SettingTexts texts;
    for (const std::string& key : settings.keys()) {
        if (loadStage(key)) {
            texts.emplace_back(key, settings.read(key).text);
        }
    }
    return texts;
}

std::vector<TextChange> changedTexts(const SettingTexts& before, const SettingTexts& after) {
    std::vector<TextChange> changes;
    for (std::size_t i = 0; i < before.size() && i < after.size(); ++i) {
        const auto& [key, was] = before[i];
        if (was != after[i].second) {
            changes.push_back({key, was, after[i].second});
        }
    }
    return changes;
}

CJson textChangesJson(const std::vector<TextChange>& changes) {
    CJson list = CJson::array();
    for (const TextChange& change : changes) {
        list.add(CJson::object(
            {{"key", change.key}, {"before", change.before}, {"after", change.after}}));
    }
    return list;
}

namespace {

// The property page is left open, and whatever comes of it the guard is what it was.
Reply executeGuarded(CRecordChannel& camera, CSystem& system, const std::string& command,
                     const ActionOptions& options) {
    system.guardDialogs(!options.dialogs && normalisedKey(command) != propertyPage);
    try {
        Reply reply = camera.execute(command);
        system.guardDialogs(!options.dialogs);
        return reply;
    } catch (const Failure&) {
        system.guardDialogs(!options.dialogs);
        throw;
    }
}

// There is an earlier failure to tell of.
void switchOnAgain(CRecordChannel& camera, const std::string& automatic) {
    try {
        camera.setValue(automatic, "true");
    } catch (const Failure&) {
        return;
    }
}

}  // namespace

void executeAction(CRecordChannel& camera, CSettings& settings, CSystem& system,
                   const std::string& command, const ActionOptions& options) {
    const std::string name = normalisedKey(command);
    if (!settings.hasCommand(name)) {
        throw settings.unknownCommand(command);
    }
    const auto automatic = settings.activeAutomatic(name);
    const bool isSwitchedOff = options.manual && automatic;
    if (isSwitchedOff) {
        camera.setValue(*automatic, "false");
    }
    try {
        const Reply reply = executeGuarded(camera, system, command, options);
        if (reply.done()) {
            return;
        }
        if (automatic && !options.manual) {
            throw Failure{.code = "auto_on",
                          .message = name + ": refused, automatic is on",
                          .adapterMessage = reply.message,
                          .hint = options.hintPrefix + " exec --manual \"" + name + "\""};
        }
        throw Failure{.code = "refused",
                      .message = name + ": " + reply.message,
                      .adapterMessage = reply.message};
    } catch (const Failure&) {
        if (isSwitchedOff) {
            switchOnAgain(camera, *automatic);
        }
        throw;
    }
}

}  // namespace camhost
