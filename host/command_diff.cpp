// SPDX-License-Identifier: MIT
// camhost diff: what the camera's settings and a saved file do not share.
#include <algorithm>
#include <optional>

#include "host/commands.h"
#include "host/picture_file.h"
#include "host/settings.h"
#include "host/settings_file.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

class CDiff {
public:
    explicit CDiff(CReport& report) : m_report(report) {}

    void add(const std::string& key, const std::optional<std::string>& saved,
             const std::optional<std::string>& now) {
        m_report.line(key + ": " + printable(saved.value_or("(not in the file)")) + " -> " +
                      printable(now.value_or("(not in the camera)")));
        CData data;
        data.set("key", key);
        if (saved) {
            data.set("saved", *saved);
        }
        if (now) {
            data.set("now", *now);
        }
        m_list.add(std::move(data));
        ++m_count;
    }
    int count() const { return m_count; }
    CData data() const { return m_list; }

private:
    CReport& m_report;
    CData m_list = CData::array();
    int m_count = 0;
};

void compareSaved(const SettingsFile& file, CSettings& settings, CDiff& diff) {
    for (const auto& [key, saved] : file.settings) {
        if (!settings.hasKey(key)) {
            diff.add(key, saved, std::nullopt);
            continue;
        }
        const Setting now = settings.read(key);
        if (!now.problem.empty() || !sameValue(now.type, saved, now.text)) {
            diff.add(key, saved, now.text);
        }
    }
}

void findUnsaved(const SettingsFile& file, CSettings& settings, CDiff& diff) {
    for (const std::string& key : settings.keys()) {
        const bool saved = std::any_of(file.settings.begin(), file.settings.end(),
                                       [&](const auto& setting) { return setting.first == key; });
        if (!saved && loadStage(key)) {
            diff.add(key, std::nullopt, settings.read(key).text);
        }
    }
}

}  // namespace

ExitCode runDiff(CommandContext& context) {
    const SettingsFile file =
        parseSettingsFile(readTextFile(context.options.file), context.options.file);
    if (file.serial != context.camera->serial()) {
        context.report.warning("the file is of camera " + file.serial + " (" + file.name + ")");
    }
    CSettings settings(*context.camera);
    CDiff diff(context.report);
    compareSaved(file, settings, diff);
    findUnsaved(file, settings, diff);
    context.report.setResult(diff.data());
    context.report.message(diff.count() == 0 ? "no differences"
                                             : std::to_string(diff.count()) + " differences");
    return context.options.strict && diff.count() > 0 ? ExitCode::Partial : ExitCode::Done;
}

}  // namespace camhost
