// SPDX-License-Identifier: MIT
// camhost choices: the texts that a setting can be; some only show in what the
// adapter says when it refuses a value, which is tried on request.
#include "host/commands.h"
#include "host/settings.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

// No camera has this as a text; as a frame rate it reads as 0.
constexpr const char* impossibleText = "?";
constexpr const char* impossibleRate = "-1";

void noteProbeThatWasTaken(CChannel& camera, const Setting& setting) {
    camera.setValue(setting.key, setting.text);
    throw Failure{
        ExitCode::Refused, "probe", setting.key + " took the value that was to be refused", {}, {}};
}

void probeStrings(CChannel& camera, Setting& setting, CReport& report) {
    const Reply reply = camera.setValue(setting.key, impossibleText);
    if (reply.done()) {
        noteProbeThatWasTaken(camera, setting);
    }
    const auto valid = parseValidValues(reply.message);
    if (!valid) {
        report.warning(setting.key + ": no choices in the answer: " + printable(reply.message));
        return;
    }
    setting.choices = valid->values;
    if (!valid->complete) {
        report.warning(setting.key + ": there are more choices than the adapter's answer holds");
    }
}

void probeFrameRate(CChannel& camera, Setting& setting, CReport& report) {
    const Reply reply = camera.setValue(setting.key, impossibleRate);
    if (reply.done()) {
        noteProbeThatWasTaken(camera, setting);
    }
    if (const auto limits = parseLimits(reply.message)) {
        setting.minimum = limits->low;
        setting.maximum = limits->high;
    } else {
        report.warning(setting.key + ": no limits in the answer: " + printable(reply.message));
    }
}

Setting learn(CSettings& settings, CommandContext& context, const std::string& key) {
    Setting setting = settings.readKnown(key);
    setting.choices = settings.choices(setting.key);
    const KeyShape shape = keyShape(setting.key);
    const bool canProbe = shape == KeyShape::Strings || shape == KeyShape::FrameRate;
    if (canProbe && context.options.probe) {
        if (shape == KeyShape::Strings) {
            probeStrings(*context.camera, setting, context.report);
        } else {
            probeFrameRate(*context.camera, setting, context.report);
        }
    } else if (canProbe) {
        context.report.message(setting.key + ": --probe asks the camera by a value it refuses");
    } else if (setting.choices.empty() && !setting.minimum) {
        context.report.message(setting.key + ": takes any text that fits");
    }
    return setting;
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

ExitCode runChoices(CommandContext& context) {
    CSettings settings(*context.camera);
    CData result = CData::array();
    for (const std::string& key : context.options.arguments) {
        const Setting setting = learn(settings, context, key);
        print(setting, context.report);
        result.add(settingData(setting));
    }
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
