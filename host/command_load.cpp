// SPDX-License-Identifier: MIT
// camhost load: sets what a file holds where it differs, automatics off first
// and back to what they were saved as at the end.
#include "host/commands.h"
#include "host/picture_file.h"
#include "host/setting_changes.h"
#include "host/settings_file.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

class CLoad {
public:
    CLoad(CommandContext& context, CSettings& settings, CSettingChanges& changes)
        : m_context(context), m_settings(settings), m_changes(changes) {}

    void run(const SettingsFile& file) {
        bool automaticsOff = false;
        for (const auto& [key, text] : loadOrder(file)) {
            if (!automaticsOff && isValue(key) && differs(key, text)) {
                switchAutomaticsOff();
                automaticsOff = true;
            }
            setIfDifferent(key, text);
        }
    }
    int problems() const { return m_problems; }

private:
    static bool isValue(const std::string& key) {
        const KeyShape shape = keyShape(key);
        return shape == KeyShape::Range || shape == KeyShape::Absolute ||
               shape == KeyShape::Strings;
    }

    bool differs(const std::string& key, const std::string& text) {
        const Setting now = m_settings.read(key);
        return !now.problem.empty() || !sameValue(now.type, text, now.text);
    }

    void switchAutomaticsOff() {
        for (const std::string& key : m_settings.keys()) {
            if (isAutoSwitch(key)) {
                setIfDifferent(key, "false");
            }
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
        m_context.report.warning(text);
        ++m_problems;
    }

    CommandContext& m_context;
    CSettings& m_settings;
    CSettingChanges& m_changes;
    int m_problems = 0;
};

}  // namespace

ExitCode runLoad(CommandContext& context) {
    const SettingsFile file =
        parseSettingsFile(readTextFile(context.options.file), context.options.file);
    if (file.serial != context.camera->serial()) {
        context.report.warning("the file is of camera " + file.serial + " (" + file.name + ")");
    }
    CSettings settings(*context.camera);
    CSettingChanges changes(*context.camera, settings, context.report, context.hintPrefix());
    CLoad load(context, settings, changes);
    load.run(file);
    context.report.setResult(changes.data());
    if (load.problems() > 0) {
        context.report.failure({ExitCode::Partial,
                                "partial",
                                std::to_string(load.problems()) + " of " +
                                    std::to_string(file.settings.size()) +
                                    " saved settings could not be set",
                                {},
                                {}});
        return ExitCode::Partial;
    }
    context.report.message(changes.changes().empty() ? "nothing to change" : "loaded");
    return context.options.strict && !changes.allMatch() ? ExitCode::Partial : ExitCode::Done;
}

}  // namespace camhost
