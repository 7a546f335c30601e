// SPDX-License-Identifier: MIT
// camhost choices: the texts that a setting can be. Where the adapter does not list
// them, some only show in what it says when it refuses a value, which is tried on request.
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/settings/refusal_texts.h"
#include "camhost/settings/setting_json.h"
#include "camhost/settings/setting_lines.h"
#include "camhost/settings/settings.h"

namespace camhost {

namespace {

// No camera has this as a text; as a frame rate it reads as 0.
constexpr const char* impossibleText = "?";
constexpr const char* impossibleRate = "-1";

// The words of the refusal. A probe that was taken is undone and ends the command.
std::string refusalOf(CRecordChannel& camera, const Setting& setting, const char* probe) {
    const Reply reply = camera.setValue(setting.key, probe);
    if (reply.done()) {
        camera.setValue(setting.key, setting.text);
        throw Failure{.code = "probe",
                      .message = setting.key + " took the value that was to be refused"};
    }
    return reply.message;
}

void probeStrings(CRecordChannel& camera, Setting& setting, CReport& report) {
    const std::string refusal = refusalOf(camera, setting, impossibleText);
    const auto valid = parseValidValues(refusal);
    if (!valid) {
        report.warning(setting.key + ": no choices in the answer: " + printable(refusal));
        return;
    }
    setting.choices = valid->values;
    if (!valid->complete) {
        report.warning(setting.key + ": there are more choices than the adapter's answer holds");
    }
}

void probeFrameRate(CRecordChannel& camera, Setting& setting, CReport& report) {
    const std::string refusal = refusalOf(camera, setting, impossibleRate);
    if (const auto limits = parseLimits(refusal)) {
        setting.minimum = limits->low;
        setting.maximum = limits->high;
    } else {
        report.warning(setting.key + ": no limits in the answer: " + printable(refusal));
    }
}

void print(const Setting& setting, CReport& report) {
    if (setting.minimum && setting.maximum) {
        report.line(setting.key + ": from " + *setting.minimum + " to " + *setting.maximum +
                    ", now " + setting.text);
        return;
    }
    report.line(setting.key + ":");
    for (const std::string& line : choiceLines(setting)) {
        report.line(line);
    }
}

}  // namespace

class CChoicesCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"choices", "the texts that a setting can be",
                "  camhost -c 1A2B choices videoformat\n"
                "  camhost -c 1A2B choices \"trigger mode strings\" --probe"};
    }

    void takeOptions(COptionList& list) override {
        list.words("KEY", m_keys, "keys of settings");
        list.flag("--probe", m_probe, "learn them from a refusal, where that is safe");
    }

    ExitCode run(CommandContext& context) override {
        CSettings settings(*context.camera, context.hintPrefix);
        std::vector<Setting> learnt;
        for (const std::string& key : m_keys) {
            learnt.push_back(learn(settings, context, key));
            print(learnt.back(), context.report);
        }
        context.report.setResult(settingsJson(learnt));
        return ExitCode::Done;
    }

private:
    Setting learn(CSettings& settings, CommandContext& context, const std::string& key) const {
        Setting setting = settings.readKnown(key);
        setting.choices = settings.choices(setting.key);
        const KeyKind kind = keyKind(setting.key);
        const bool canProbe = kind == KeyKind::Strings || kind == KeyKind::FrameRate;
        if (canProbe && !setting.choices.empty()) {
            return setting;
        }
        if (canProbe && !m_probe) {
            context.report.message(setting.key + ": --probe asks the camera by a value it refuses");
        } else if (kind == KeyKind::Strings) {
            probeStrings(*context.camera, setting, context.report);
        } else if (kind == KeyKind::FrameRate) {
            probeFrameRate(*context.camera, setting, context.report);
        } else if (setting.choices.empty() && !setting.minimum) {
            context.report.message(setting.key + ": takes any text that fits");
        }
        return setting;
    }

    std::vector<std::string> m_keys;
    bool m_probe = false;
};

template std::unique_ptr<CCommand> makeCommand<CChoicesCommand>();

}  // namespace camhost
