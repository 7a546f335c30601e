// SPDX-License-Identifier: MIT
// Limits are reached and kept, and what switches and texts are set to. All while stopped; the
// settings are put back.
#include <algorithm>
#include <cmath>
#include <limits>

#include "camhost/base/number_texts.h"
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"
#include "camhost/settings/key_kinds.h"

namespace camhost {

namespace {

constexpr int shownDecimals = 6;
constexpr double smallestStep = 0.000001;

struct Limited {
    std::string key;
    double least = 0.0;
    double most = 0.0;
};

// As a host writes a number of this kind.
std::string textOf(KeyKind kind, double value) {
    return fixedText(value, kind == KeyKind::Range ? 0 : shownDecimals);
}

// Whether it takes its own value: not while an automatic that can not be switched off has it,
// nor in a state of the camera that forbids it.
bool canBeSet(CCheck& check, const std::string& key) {
    if (const auto guard = autoSwitchFor(key, check.keys())) {
        check.host().set(*guard, "false");
    }
    const auto text = check.value(key);
    return text && check.host().set(key, *text).isDone();
}

std::vector<Limited> limitedSettings(CCheck& check, KeyKind kind) {
    std::vector<Limited> found;
    for (const std::string& key : check.keys()) {
        if (keyKind(key) != kind) {
            continue;
        }
        const auto least = wholeNumber(check.value(key + " min").value_or(""));
        const auto most = wholeNumber(check.value(key + " max").value_or(""));
        if (least && most && canBeSet(check, key)) {
            found.push_back({key, *least, *most});
        }
    }
    if (found.empty()) {
        throw NotSupported{"there are none that can be set"};
    }
    return found;
}

bool isNear(double a, double b) {
    constexpr double part = 0.0001;
    return std::abs(a - b) <= smallestStep * 2 + std::abs(b) * part;
}

void isTakenAndRead(CCheck& check, KeyKind kind, const std::string& key, double value,
                    double inward) {
    std::string text = textOf(kind, value);
    Answer answer = check.host().set(key, text);
    // The limit's own text may lie outside of it by its last decimal.
    if (!answer.isDone() && kind == KeyKind::Absolute) {
        text = textOf(kind, value + inward);
        answer = check.host().set(key, text);
    }
    check.expectAnswer(answer, {}, "\"" + key + "\" set to " + text);
    if (answer.isDone()) {
        const std::string now = check.value(key).value_or("not there");
        check.expect(isNear(wholeNumber(now).value_or(value + 1.0), value),
                     "\"" + key + "\" set to " + text + " is " + now);
    }
}

template <KeyKind kind>
void leastIsTaken(CCheck& check) {
    for (const Limited& each : limitedSettings(check, kind)) {
        isTakenAndRead(check, kind, each.key, each.least, smallestStep);
    }
}

template <KeyKind kind>
void mostIsTaken(CCheck& check) {
    for (const Limited& each : limitedSettings(check, kind)) {
        isTakenAndRead(check, kind, each.key, each.most, -smallestStep);
    }
}

// Nothing where no such number can be written.
std::optional<double> beyond(KeyKind kind, const Limited& limits, bool above) {
    using Whole = std::numeric_limits<std::int32_t>;
    const double step = kind == KeyKind::Range ? 1.0 : (limits.most - limits.least) / 2 + 0.001;
    const double value = above ? limits.most + step : limits.least - step;
    const bool isWhole = value >= Whole::min() && value <= Whole::max();
    return kind == KeyKind::Range && !isWhole ? std::nullopt : std::optional(value);
}

template <KeyKind kind, bool above>
void beyondIsRefused(CCheck& check) {
    for (const Limited& each : limitedSettings(check, kind)) {
        if (const auto value = beyond(kind, each, above)) {
            const std::string text = textOf(kind, *value);
            check.expectAnswer(check.host().set(each.key, text),
                               {.result = HOST_RESULT_FAILURE, .said = Said::Something},
                               "\"" + each.key + "\" set to " + text);
        }
    }
}

template <KeyKind kind>
void refusalsChangeNothing(CCheck& check) {
    for (const Limited& each : limitedSettings(check, kind)) {
        // Away from the limits, which a refusal may be taken for.
        const double middle = std::floor(each.least / 2 + each.most / 2);
        check.host().set(each.key, textOf(kind, std::max(middle, each.least)));
        for (const bool above : {false, true}) {
            const auto value = beyond(kind, each, above);
            const auto before = check.value(each.key);
            if (value && !check.host().set(each.key, textOf(kind, *value)).isDone()) {
                check.expect(check.value(each.key) == before, "\"" + each.key + "\" has changed");
            }
        }
    }
}

void automaticRefuses(CCheck& check) {
    bool tried = false;
    for (const Limited& each : limitedSettings(check, KeyKind::Absolute)) {
        const auto guard = autoSwitchFor(each.key, check.keys());
        if (guard && check.host().set(*guard, "true").isDone() && check.value(*guard) == "true") {
            tried = true;
            const std::string text = textOf(KeyKind::Absolute, each.least);
            check.expectAnswer(check.host().set(each.key, text),
                               {.result = HOST_RESULT_FAILURE, .said = Said::Something},
                               "\"" + each.key + "\"");
            check.host().set(*guard, "false");
        }
    }
    if (!tried) {
        throw NotSupported{"there is none with an automatic"};
    }
}

void numbersAreReadAsFar(CCheck& check) {
    for (const Limited& each : limitedSettings(check, KeyKind::Range)) {
        const std::string text = textOf(KeyKind::Range, each.most);
        check.expectAnswer(check.host().set(each.key, text + "abc"), {}, "\"" + each.key + "\"");
        const std::string now = check.value(each.key).value_or("not there");
        check.expect(now == text, std::string("\"")
                                      .append(each.key)
                                      .append("\" set to ")
                                      .append(text)
                                      .append("abc is ")
                                      .append(now));
    }
}

void blockReachesBrightness(CCheck& check) {
    constexpr const char* key = "brightness value range";
    if (!check.hasKey(key) || !canBeSet(check, key)) {
        throw NotSupported{std::string("there is no ") + key};
    }
    CameraParameterBlock block{};
    const VideoChannelRecord& record = check.host().record();
    block.exposure =
        wholeNumber(check.value("exposure value abs").value_or("")).value_or(record.exposure);
    block.contrast = record.contrast;
    block.brightness = 1.0;
    check.host().setParameters(block);
    check.expect(check.value(key) == check.value(std::string(key) + " max"),
                 std::string(key) + " is " + check.value(key).value_or("not there"));
}

constexpr Claim limitTable[] = {
    {"whole numbers: the minimum is taken and read back", leastIsTaken<KeyKind::Range>},
    {"whole numbers: the maximum is taken and read back", mostIsTaken<KeyKind::Range>},
    {"whole numbers: less is refused with a text", beyondIsRefused<KeyKind::Range, false>},
    {"whole numbers: more is refused with a text", beyondIsRefused<KeyKind::Range, true>},
    {"whole numbers: a refusal changes nothing", refusalsChangeNothing<KeyKind::Range>},
    {"whole numbers are read as far as they are numbers", numbersAreReadAsFar},
    {"decimals: the minimum is taken and read back", leastIsTaken<KeyKind::Absolute>},
    {"decimals: the maximum is taken and read back", mostIsTaken<KeyKind::Absolute>},
    {"decimals: less is refused with a text", beyondIsRefused<KeyKind::Absolute, false>},
    {"decimals: more is refused with a text", beyondIsRefused<KeyKind::Absolute, true>},
    {"decimals: a refusal changes nothing", refusalsChangeNothing<KeyKind::Absolute>},
    {"an automatic that is on refuses values", automaticRefuses},
    {"a parameter block sets the brightness", blockReachesBrightness},
};

std::vector<std::string> settableSettings(CCheck& check, KeyKind kind) {
    std::vector<std::string> found;
    for (const std::string& key : check.keys()) {
        if (keyKind(key) == kind && canBeSet(check, key)) {
            found.push_back(key);
        }
    }
    if (found.empty()) {
        throw NotSupported{"there are none that can be set"};
    }
    return found;
}

template <KeyKind kind>
void isSetTo(CCheck& check, const char* typed, const std::string& read) {
    for (const std::string& key : settableSettings(check, kind)) {
        check.expectAnswer(check.host().set(key, typed), {}, "\"" + key + "\" set to " + typed);
        const std::string now = check.value(key).value_or("not there");
        check.expect(now == read, std::string("\"")
                                      .append(key)
                                      .append("\" set to \"")
                                      .append(typed)
                                      .append("\" is ")
                                      .append(now));
    }
}

void otherTextsAreRefused(CCheck& check) {
    for (const std::string& key : settableSettings(check, KeyKind::Strings)) {
        const auto before = check.value(key);
        const Answer answer = check.host().set(key, "no such text");
        check.expectAnswer(answer, {.result = HOST_RESULT_FAILURE, .said = Said::Something},
                           "\"" + key + "\"");
        check.expect(answer.isDone() ||
                         answer.message.value_or("").find("Valid values are:") != std::string::npos,
                     "\"" + key + "\" " + told(answer));
        check.expect(answer.isDone() || check.value(key) == before, "\"" + key + "\" has changed");
    }
}

void formatsCanBeChosen(CCheck& check) {
    constexpr const char* key = "videoformat";
    constexpr std::int32_t most = 16;
    if (!check.hasKey(key)) {
        throw NotSupported{"there is no videoformat"};
    }
    for (std::int32_t index = 0; index < most; ++index) {
        const Answer choice = check.host().choice(key, index);
        if (!choice.isDone() || !choice.text) {
            break;
        }
        check.expectAnswer(check.host().set(key, *choice.text), {}, *choice.text);
        check.expect(check.value(key) == choice.text,
                     *choice.text + " reads " + check.value(key).value_or("not there"));
    }
}

void listsAreReadOnly(CCheck& check) {
    bool tried = false;
    for (const std::string& key : check.keys()) {
        const auto before = check.value(key);
        if (keyKind(key) == KeyKind::NameList && before) {
            tried = true;
            check.expectAnswer(check.host().set(key, "no such text"),
                               {.result = HOST_RESULT_FAILURE, .said = Said::Something}, key);
            check.expect(check.value(key) == before, "\"" + key + "\" has changed");
        }
    }
    if (!tried) {
        throw NotSupported{"there are no lists"};
    }
}

constexpr Claim switchTable[] = {
    {"a switch is set by true",
     [](CCheck& check) { isSetTo<KeyKind::Switch>(check, "true", "true"); }},
    {"a switch is cleared by false",
     [](CCheck& check) { isSetTo<KeyKind::Switch>(check, "false", "false"); }},
    {"every other text is false for a switch",
     [](CCheck& check) { isSetTo<KeyKind::Switch>(check, "perhaps", "false"); }},
    {"other texts are refused, with the valid ones", otherTextsAreRefused},
    {"every video format can be chosen", formatsCanBeChosen},
    {"lists are read-only", listsAreReadOnly},
};

void settingsAreBack(CCheck& check) {
    for (const std::string& difference : check.lostSettings()) {
        check.expect(false, difference);
    }
}

constexpr Claim restoreTable[] = {{"all settings are as they were before", settingsAreBack}};

void save(CCheck& check) {
    check.saveSettings();
}

void putBack(CCheck& check) {
    check.putSettingsBack();
}

}  // namespace

ClaimGroup limitClaims() {
    return {"Limits", limitTable, save, putBack};
}

ClaimGroup switchClaims() {
    return {"Switches, texts and formats", switchTable, save, putBack};
}

ClaimGroup restoreClaims() {
    return {"Settings at the end", restoreTable};
}

}  // namespace camhost
