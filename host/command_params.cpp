// SPDX-License-Identifier: MIT
// camhost params: exposure, contrast, brightness, trigger and region in the one
// block that a host applies; what is not named is kept as it is.
#include <array>
#include <cmath>

#include "host/commands.h"
#include "host/parameter_texts.h"
#include "host/settings.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

constexpr std::array<const char*, 6> watchedKeys{
    "exposure auto switch",   "exposure value abs",    "contrast value range",
    "brightness value range", "trigger enable switch", "trigger polarity switch"};

using Texts = std::array<std::string, watchedKeys.size()>;

Texts readWatched(CSettings& settings) {
    Texts texts;
    for (std::size_t i = 0; i < watchedKeys.size(); ++i) {
        if (settings.hasKey(watchedKeys[i])) {
            texts[i] = settings.read(watchedKeys[i]).text;
        }
    }
    return texts;
}

double keptFraction(CSettings& settings, const char* key) {
    if (!settings.hasKey(key)) {
        return 0.0;
    }
    const Setting setting = settings.read(key);
    const auto value = wholeInteger(setting.text);
    const auto minimum = wholeInteger(setting.minimum.value_or(""));
    const auto maximum = wholeInteger(setting.maximum.value_or(""));
    return value && minimum && maximum ? fractionFor(*minimum, *maximum, *value) : 0.0;
}

bool keptSwitch(CSettings& settings, const char* key) {
    return settings.hasKey(key) && settings.read(key).text == "true";
}

CameraParameterBlock makeBlock(CommandContext& context, CSettings& settings,
                               const AskedParameters& asked) {
    const VideoChannelRecord& record = context.camera->record();
    CameraParameterBlock block{};
    block.exposure = asked.exposure.value_or(
        wholeNumber(settings.read("exposure value abs").text).value_or(record.exposure));
    block.contrast =
        asked.contrast ? *asked.contrast : keptFraction(settings, "contrast value range");
    block.brightness =
        asked.brightness ? *asked.brightness : keptFraction(settings, "brightness value range");
    const bool trigger = asked.trigger.value_or(keptSwitch(settings, "trigger enable switch"));
    const bool polarity = asked.polarity.value_or(keptSwitch(settings, "trigger polarity switch"));
    block.triggerEnable = trigger ? 1 : 0;
    block.triggerPolarity = polarity ? 1 : 0;
    const auto region =
        asked.region.value_or(std::array<std::int32_t, 4>{0, 0, record.maxWidth, record.maxHeight});
    block.roiLeft = region[0];
    block.roiTop = region[1];
    block.roiWidth = region[2];
    block.roiHeight = region[3];
    return block;
}

// What a named parameter must read as afterwards; nothing when it was not named.
struct Expectation {
    const char* name;
    const char* key;
    bool asked;
    std::string text;
};

std::string fractionText(CSettings& settings, const char* key, std::optional<double> fraction) {
    const Setting setting = settings.read(key);
    const auto minimum = wholeInteger(setting.minimum.value_or(""));
    const auto maximum = wholeInteger(setting.maximum.value_or(""));
    if (!fraction || !minimum || !maximum) {
        return {};
    }
    const double span = static_cast<double>(*maximum) - *minimum;
    return fixedText(*minimum + std::trunc(span * *fraction), 0);
}

std::vector<Expectation> expectations(CSettings& settings, const AskedParameters& asked) {
    const auto switchText = [](std::optional<bool> on) {
        return std::string(on.value_or(false) ? "true" : "false");
    };
    return {
        {"exposure", "exposure value abs", asked.exposure.has_value(),
         fixedText(asked.exposure.value_or(0.0), 6)},
        {"contrast", "contrast value range", asked.contrast.has_value(),
         fractionText(settings, "contrast value range", asked.contrast)},
        {"brightness", "brightness value range", asked.brightness.has_value(),
         fractionText(settings, "brightness value range", asked.brightness)},
        {"trigger", "trigger enable switch", asked.trigger.has_value(), switchText(asked.trigger)},
        {"polarity", "trigger polarity switch", asked.polarity.has_value(),
         switchText(asked.polarity)},
    };
}

// The block reports nothing itself, so what came of it is read back.
bool checkExpectations(CommandContext& context, CSettings& settings, const AskedParameters& asked) {
    bool all = true;
    for (const Expectation& expected : expectations(settings, asked)) {
        if (!expected.asked) {
            continue;
        }
        if (!settings.hasKey(expected.key)) {
            context.report.warning("the camera has no " + std::string(expected.name) + " (\"" +
                                   expected.key + "\")");
            all = false;
            continue;
        }
        const Setting now = settings.read(expected.key);
        if (!sameValue(now.type, expected.text, now.text)) {
            context.report.warning(std::string(expected.name) + ": asked for " + expected.text +
                                   ", reads " + now.text);
            all = false;
        }
    }
    return all;
}

}  // namespace

ExitCode runParams(CommandContext& context) {
    const AskedParameters asked = parseParameters(context.options.arguments);
    CSettings settings(*context.camera);
    const Texts before = readWatched(settings);
    const CameraParameterBlock block = makeBlock(context, settings, asked);
    const Reply reply = context.camera->applyParameters(block);
    if (!reply.done()) {
        throw Failure{
            ExitCode::Refused, "refused", "the parameter block was refused", reply.message, {}};
    }
    const Texts after = readWatched(settings);
    CData result = CData::array();
    for (std::size_t i = 0; i < watchedKeys.size(); ++i) {
        if (before[i] != after[i]) {
            context.report.line(std::string(watchedKeys[i]) + ": " + before[i] + " -> " + after[i]);
            CData change;
            change.set("key", watchedKeys[i]);
            change.set("before", before[i]);
            change.set("after", after[i]);
            result.add(std::move(change));
        }
    }
    if (!asked.exposure && before[0] == "true" && after[0] == "false") {
        context.report.warning("the block switches automatic exposure off");
    }
    context.report.setResult(std::move(result));
    const bool all = checkExpectations(context, settings, asked);
    return context.options.strict && !all ? ExitCode::Partial : ExitCode::Done;
}

}  // namespace camhost
