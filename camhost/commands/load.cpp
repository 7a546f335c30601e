// SPDX-License-Identifier: MIT
// camhost load: sets what a file holds where it differs. The automatic of a value that
// differs goes off first, and is what it was saved as at the end.
#include <set>

#include "camhost/base/files.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings_file.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

class CLoad {
public:
    CLoad(CReport& report, CSettings& settings, CSettingChanges& changes)
        : m_report(report), m_settings(settings), m_changes(changes) {}

    void run(const SettingsFile& file) {
        for (const auto& [key, text] : loadOrder(file)) {
            if (isValue(key) && m_settings.hasKey(key) && differs(key, text)) {
                switchAutomaticOff(key);
            }
            setIfDifferent(key, text);
            m_switchedOff.erase(key);
        }
        // Those that the file does not tell of are what they were.
        for (const std::string& key : m_switchedOff) {
            setIfDifferent(key, "true");
        }
    }
    int problems() const { return m_problems; }

private:
    static bool isValue(const std::string& key) {
        const KeyKind kind = keyKind(key);
        return kind == KeyKind::Range || kind == KeyKind::Absolute || kind == KeyKind::Strings;
    }

    bool differs(const std::string& key, const std::string& text) {
        const Setting now = m_settings.read(key);
        return !now.problem.empty() || !sameValue(now.type, text, now.text);
    }

    void switchAutomaticOff(const std::string& key) {
        if (const auto automatic = m_settings.activeAutomatic(key)) {
            m_switchedOff.insert(*automatic);
            setIfDifferent(*automatic, "false");
        }
    }

    void setIfDifferent(const std::string& key, const std::string& text) {
        if (!m_settings.hasKey(key)) {
            problem("the camera has no \"" + key + "\"");
            return;
        }
        if (!differs(key, text)) {
            return;
        }
        try {
            m_changes.applyText(key, text);
        } catch (const Failure& failure) {
            problem(failure.message);
        }
    }

    void problem(const std::string& text) {
        m_report.warning(text);
        ++m_problems;
    }

    CReport& m_report;
    CSettings& m_settings;
    CSettingChanges& m_changes;
    std::set<std::string> m_switchedOff;
    int m_problems = 0;
};

}  // namespace

class CLoadCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"load", "set what a file holds, in a safe order",
                "  camhost -c 1A2B load bench.json\n"
                "  camhost -c 1A2B load bench.json --strict"};
    }

    void takeOptions(COptionList& list) override {
        list.word("FILE", m_file, "made by save", COptionList::Need::Required);
        list.flag("--strict", m_strict, "exit 6 when a read-back differs");
    }

    ExitCode run(CommandContext& context) override {
        const SettingsFile file = parseSettingsFile(readTextFile(m_file), m_file);
        if (file.serial != context.camera->serial()) {
            context.report.warning("the file is of camera " + file.serial + " (" + file.name + ")");
        }
        CSettings settings(*context.camera, context.hintPrefix);
        CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix);
        CLoad load(context.report, settings, changes);
        load.run(file);
        context.report.setResult(changes.json());
        if (load.problems() > 0) {
            context.report.failure({.exit = ExitCode::Partial,
                                    .code = "partial",
                                    .message = std::to_string(load.problems()) + " of " +
                                               std::to_string(file.settings.size()) +
                                               " saved settings could not be set"});
            return ExitCode::Partial;
        }
        context.report.message(changes.changes().empty() ? "nothing to change" : "loaded");
        return m_strict && !changes.allMatch() ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::string m_file;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CLoadCommand>();

}  // namespace camhost
