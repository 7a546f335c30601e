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

void executeAction(CRecordChannel& camera, CSettings& settings, CSystem& system,
                   const std::string& command, const ActionOptions& options) {
    const std::string name = normalisedKey(command);
    if (!settings.hasCommand(name)) {
        throw settings.unknownCommand(command);
    }
    const auto automatic = settings.activeAutomatic(name);
    if (options.manual && automatic) {
        camera.setValue(*automatic, "false");
    }
    system.guardDialogs(!options.dialogs && name != propertyPage);
    const Reply reply = camera.execute(command);
    system.guardDialogs(!options.dialogs);
    if (reply.done()) {
        return;
    }
    if (options.manual && automatic) {
        camera.setValue(*automatic, "true");
    } else if (automatic) {
        throw Failure{.code = "auto_on",
                      .message = name + ": refused, automatic is on",
                      .adapterMessage = reply.message,
                      .hint = options.hintPrefix + " exec --manual \"" + name + "\""};
    }
    throw Failure{
        .code = "refused", .message = name + ": " + reply.message, .adapterMessage = reply.message};
}

}  // namespace camhost
