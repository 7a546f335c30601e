// SPDX-License-Identifier: MIT
// camhost diff: what the camera's settings and a saved file do not share.
#include "camhost/base/files.h"
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/settings_compare.h"

namespace camhost {

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
        CJson list = CJson::array();
        const std::vector<SettingDifference> found = differencesFrom(file, settings);
        for (const SettingDifference& each : found) {
            context.report.line(each.key + ": " +
                                printable(each.saved.value_or("(not in the file)")) + " -> " +
                                printable(each.now.value_or("(not in the camera)")));
            list.add(differenceJson(each));
        }
        context.report.setResult(std::move(list));
        context.report.message(found.empty()       ? "no differences"
                               : found.size() == 1 ? "1 difference"
                                                   : std::to_string(found.size()) + " differences");
        return m_strict && !found.empty() ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::string m_file;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CDiffCommand>();

}  // namespace camhost
