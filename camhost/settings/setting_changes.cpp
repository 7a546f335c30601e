// SPDX-License-Identifier: MIT
#include "camhost/settings/setting_changes.h"

#include <algorithm>
#include <utility>

#include "camhost/base/name_search.h"
#include "camhost/base/texts.h"
#include "camhost/settings/refusal_texts.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

bool readsAsAsked(const Setting& after, const std::string& asked) {
    return sameValue(after.type, asked, after.text) ||
           (keyKind(after.key) == KeyKind::PixelFormat && sameIgnoringCase(asked, after.text));
}

// Of the choices that only a refusal names.
std::string nearChoice(const std::string& asked, const std::string& refusal) {
    const auto valid = parseValidValues(refusal);
    const auto near = valid ? nearNames(asked, valid->values) : std::vector<std::string>();
    return near.empty() ? std::string() : "did you mean " + quotedList(near) + "?";
}

const char* remark(ChangeKind kind) {
    switch (kind) {
        case ChangeKind::DryRun:
            return "   (not done)";
        case ChangeKind::PutBack:
            return "   (put back)";
        case ChangeKind::Done:
            break;
    }
    return "";
}

CJson changeJson(const Change& change) {
    CJson json = CJson::object({{"key", change.key}});
    if (change.kind != ChangeKind::PutBack) {
        json.set("asked", change.asked);
    }
    json.set("before", change.before);
    switch (change.kind) {
        case ChangeKind::DryRun:
            json.set("dry_run", true);
            break;
        case ChangeKind::PutBack:
            json.set("after", change.after);
            json.set("put_back", true);
            break;
        case ChangeKind::Done:
            json.set("after", change.after);
            json.set("matches", change.matches);
            break;
    }
    return json;
}

}  // namespace

CSettingChanges::CSettingChanges(CRecordChannel& channel, CSettings& settings, CReport& report,
                                 std::string hintPrefix)
    : m_channel(channel),
      m_settings(settings),
      m_report(report),
      m_forms{.prefix = std::move(hintPrefix)} {}

void CSettingChanges::becomeARuns(const std::string& command) {
    m_asMessages = true;
    m_forms.manual = " " + command + " --manual --set ";
}

void CSettingChanges::applyAll(const std::vector<Assignment>& assignments,
                               const ChangeOptions& options) {
    CValueChecks checks(m_settings, m_forms, options);
    std::vector<Assignment> checked;
    checked.reserve(assignments.size());
    for (const Assignment& assignment : assignments) {
        checked.push_back({assignment.key, checks.checked(assignment)});
    }
    try {
        for (const Assignment& assignment : checked) {
            if (options.dryRun) {
                showOnly(assignment, options);
            } else {
                apply(assignment, options);
            }
        }
    } catch (const Failure&) {
        putBack();
        throw;
    }
}

void CSettingChanges::showOnly(const Assignment& assignment, const ChangeOptions& options) {
    const Setting now = m_settings.readKnown(assignment.key);
    const auto automatic = options.manual ? m_settings.activeAutomatic(now.key) : std::nullopt;
    if (automatic && !isNoted(*automatic)) {
        note({*automatic, "false", "true", "false", true, ChangeKind::DryRun});
    }
    note({now.key, assignment.value, now.text, assignment.value, true, ChangeKind::DryRun});
    if (isLeftToTheAdapter(keyKind(now.key))) {
        m_report.message(now.key + ": only the adapter can tell whether it takes that");
    }
}

bool CSettingChanges::isNoted(const std::string& key) const {
    return std::any_of(m_changes.begin(), m_changes.end(),
                       [&](const Change& change) { return change.key == key; });
}

void CSettingChanges::apply(const Assignment& assignment, const ChangeOptions& options) {
    if (options.manual) {
        if (const auto automatic = m_settings.activeAutomatic(normalisedKey(assignment.key))) {
            applyText(*automatic, "false");
        }
    }
    applyText(assignment.key, assignment.value);
}

void CSettingChanges::applyText(const std::string& key, const std::string& text) {
    const Setting before = m_settings.readKnown(key);
    const Reply reply = m_channel.setValue(key, text);
    if (!reply.done()) {
        throw refusal({key, text}, reply);
    }
    const Setting after = m_settings.readKnown(key);
    note({after.key, text, before.text, after.text, readsAsAsked(after, text)});
}

void CSettingChanges::putBack() {
    // The last first; putting back is noted as a change too.
    std::vector<Change> made = m_changes;
    std::reverse(made.begin(), made.end());
    for (const Change& change : made) {
        if (change.kind == ChangeKind::Done) {
            putBack(change);
        }
    }
}

// There is an earlier failure to tell of.
void CSettingChanges::putBack(const Change& change) {
    try {
        const Setting now = m_settings.read(change.key);
        m_channel.setValue(change.key, change.before);
        const Setting after = m_settings.read(change.key);
        note({change.key, change.before, now.text, after.text, true, ChangeKind::PutBack});
        if (!readsAsAsked(after, change.before)) {
            m_report.warning(change.key + " could not be put back to " + change.before);
        }
    } catch (const Failure& failure) {
        m_report.warning(change.key + " could not be put back: " + failure.message);
    }
}

Failure CSettingChanges::refusal(const Assignment& assignment, const Reply& reply) {
    const std::string normal = normalisedKey(assignment.key);
    if (const auto automatic = m_settings.activeAutomatic(normal);
        automatic && hasLimits(keyKind(normal))) {
        Failure failure = automaticOn(assignment, *automatic, m_forms);
        failure.adapterMessage = reply.message;
        return failure;
    }
    // The adapter uses these words also when the camera's library failed.
    if (m_settings.hasKey(normal) && reply.message.starts_with("Unknown property")) {
        return {.code = "failed",
                .message = assignment.key + ": the camera's library failed at this value",
                .adapterMessage = reply.message};
    }
    const bool named = reply.message.starts_with(normal);
    const std::string reason = reply.message.empty() ? "refused" : reply.message;
    return {.code = "refused",
            .message = named ? reply.message : assignment.key + ": " + reason,
            .adapterMessage = reply.message,
            .hint = nearChoice(assignment.value, reply.message)};
}

void CSettingChanges::note(Change change) {
    const std::string line = change.key + ": " + printable(change.before) + " -> " +
                             printable(change.after) + remark(change.kind);
    if (m_asMessages) {
        m_report.message(line);
    } else {
        m_report.line(line);
    }
    if (!change.matches) {
        m_report.warning(change.key + ": asked for " + change.asked + ", reads " + change.after);
    }
    m_changes.push_back(std::move(change));
}

bool CSettingChanges::allMatch() const {
    return std::all_of(m_changes.begin(), m_changes.end(),
                       [](const Change& change) { return change.matches; });
}

CJson CSettingChanges::json() const {
    CJson list = CJson::array();
    for (const Change& change : m_changes) {
        list.add(changeJson(change));
    }
    return list;
}

}  // namespace camhost
