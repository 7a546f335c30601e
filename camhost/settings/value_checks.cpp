// SPDX-License-Identifier: MIT
#include "camhost/settings/value_checks.h"

#include <algorithm>
#include <utility>

#include "camhost/base/name_search.h"
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

Failure refused(std::string message, std::string hint = {}) {
    return {.code = "refused", .message = std::move(message), .hint = std::move(hint)};
}

// As far as the six decimals of the adapter's number texts can tell. Limits that are
// reversed are the adapter's to judge.
void checkLimits(const Assignment& assignment, const Setting& now, const std::string& text) {
    constexpr double lastDecimal = 1e-6;
    const auto low = wholeNumber(now.minimum.value_or(""));
    const auto high = wholeNumber(now.maximum.value_or(""));
    const auto value = wholeNumber(text);
    if (low && high && value && *low <= *high &&
        (*value < *low - lastDecimal || *value > *high + lastDecimal)) {
        throw refused(assignment.key + " must be within " + *now.minimum + " and " + *now.maximum +
                      ", not " + assignment.value);
    }
}

std::string checkedText(const Assignment& assignment, KeyKind kind) {
    std::string reason;
    const auto text = guardedValue(typeOfKind(kind), assignment.value, reason);
    if (!text) {
        throw Failure{
            .exit = ExitCode::Usage,
            .code = "bad_value",
            .message = assignment.key + " " + reason + ", not \"" + assignment.value + "\"",
            .hint = "--raw hands any text to the adapter"};
    }
    return *text;
}

bool movesLimits(KeyKind kind) {
    return kind == KeyKind::VideoNorm || kind == KeyKind::InputChannel ||
           kind == KeyKind::VideoFormat;
}

// The adapter compares input channels by another text than the one that it lists.
bool hasListedChoices(KeyKind kind) {
    return kind == KeyKind::VideoFormat || kind == KeyKind::VideoNorm ||
           kind == KeyKind::PixelFormat;
}

// A list that is one text may have been cut at its end.
bool mayBeCut(const std::vector<std::string>& choices, KeyKind kind) {
    constexpr std::size_t shortOfTheBuffer = 200;
    return kind == KeyKind::VideoNorm && join(choices, ",").size() > shortOfTheBuffer;
}

}  // namespace

Failure automaticOn(const Assignment& assignment, const std::string& automatic,
                    const ChangeForms& forms) {
    return {.code = "auto_on",
            .message = assignment.key + ": refused, automatic is on",
            .hint = forms.prefix + forms.manual + "\"" + assignment.key + "=" + assignment.value +
                    "\"   (or, in the same run before it, \"" + automatic + "=false\")"};
}

bool isLeftToTheAdapter(KeyKind kind) {
    return kind == KeyKind::Strings || kind == KeyKind::InputChannel || kind == KeyKind::FrameRate;
}

void CValueChecks::checkAutomatic(const Assignment& assignment, const std::string& key) {
    const auto automatic = m_settings.automaticOf(key);
    if (!automatic || m_options.manual) {
        return;
    }
    const auto earlier = m_before.find(*automatic);
    const bool on = earlier != m_before.end() ? earlier->second == "true"
                                              : m_settings.activeAutomatic(key).has_value();
    if (on) {
        throw automaticOn(assignment, *automatic, m_forms);
    }
}

std::string CValueChecks::withinChoices(const Assignment& assignment, const Setting& now) {
    const KeyKind kind = keyKind(now.key);
    const std::vector<std::string> choices = m_settings.choices(now.key);
    if (choices.empty() || mayBeCut(choices, kind) ||
        (kind != KeyKind::PixelFormat && m_changesFormat)) {
        return assignment.value;
    }
    const auto found = std::find_if(choices.begin(), choices.end(), [&](const auto& choice) {
        return sameIgnoringCase(choice, assignment.value);
    });
    if (found != choices.end()) {
        return *found;
    }
    constexpr std::size_t few = 4;
    std::string text = assignment.key + " has no choice \"" + assignment.value + "\"";
    if (const auto near = nearNames(assignment.value, choices); !near.empty()) {
        text += "; did you mean " + quotedList(near) + "?";
    } else if (choices.size() <= few) {
        text += "; there are " + quotedList(choices);
    }
    throw refused(text, m_forms.prefix + " choices \"" + now.key + "\"");
}

std::string CValueChecks::checked(const Assignment& assignment) {
    const std::string key = normalisedKey(assignment.key);
    const KeyKind kind = keyKind(key);
    if (m_options.raw) {
        return assignment.value;
    }
    const Setting now = m_settings.readKnown(assignment.key);
    if (isReadOnly(kind)) {
        throw refused(assignment.key + " is read-only");
    }
    std::string text = checkedText(assignment, kind);
    if (hasLimits(kind)) {
        checkAutomatic(assignment, key);
        if (!m_changesFormat) {
            checkLimits(assignment, now, text);
        }
    }
    if (hasListedChoices(kind)) {
        text = withinChoices(assignment, now);
    }
    m_before[key] = text;
    m_changesFormat = m_changesFormat || movesLimits(kind);
    return text;
}

}  // namespace camhost
