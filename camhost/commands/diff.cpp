// SPDX-License-Identifier: MIT
// camhost diff: what the camera's settings and a saved file do not share.
#include <algorithm>
#include <optional>

#include "camhost/base/files.h"
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/settings.h"
#include "camhost/settings/settings_file.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

class CDiff {
public:
    explicit CDiff(CReport& report) : m_report(report) {}

    void add(const std::string& key, const std::optional<std::string>& saved,
             const std::optional<std::string>& now) {
        m_report.line(key + ": " + printable(saved.value_or("(not in the file)")) + " -> " +
                      printable(now.value_or("(not in the camera)")));
        CJson difference = CJson::object({{"key", key}});
        if (saved) {
            difference.set("saved", *saved);
        }
        if (now) {
            difference.set("now", *now);
        }
        m_list.add(std::move(difference));
        ++m_count;
    }
    int count() const { return m_count; }
    const CJson& json() const { return m_list; }

private:
    CReport& m_report;
    CJson m_list = CJson::array();
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

class CDiffCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"diff", "what differs from a saved file",
                "  camhost -c 1A2B diff bench.json\n"
                "  camhost -c 1A2B diff bench.json --strict"};
    }

    void takeOptions(COptionList& list) override {
        list.word("FILE", m_file, "made by save", COptionList::Need::Required);
        list.flag("--strict", m_strict, "exit 6 when something differs");
    }

    ExitCode run(CommandContext& context) override {
        const SettingsFile file = parseSettingsFile(readTextFile(m_file), m_file);
        if (file.serial != context.camera->serial()) {
            context.report.warning("the file is of camera " + file.serial + " (" + file.name + ")");
        }
        CSettings settings(*context.camera, context.hintPrefix);
        CDiff diff(context.report);
        compareSaved(file, settings, diff);
        findUnsaved(file, settings, diff);
        context.report.setResult(diff.json());
        context.report.message(diff.count() == 0 ? "no differences"
                                                 : std::to_string(diff.count()) + " differences");
        return m_strict && diff.count() > 0 ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::string m_file;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CDiffCommand>();

}  // namespace camhost
