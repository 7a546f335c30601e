// SPDX-License-Identifier: MIT
#include "camhost/settings/setting_changes.h"

#include <algorithm>
#include <utility>

#include "camhost/base/texts.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

bool readsAsAsked(const Setting& after, const std::string& asked) {
    return sameValue(after.type, asked, after.text) ||
           (keyKind(after.key) == KeyKind::PixelFormat && sameIgnoringCase(asked, after.text));
}

}  // namespace

CSettingChanges::CSettingChanges(CRecordChannel& channel, CSettings& settings, CReport& report,
                                 std::string hintPrefix)
    : m_channel(channel),
      m_settings(settings),
      m_report(report),
      m_hintPrefix(std::move(hintPrefix)) {}

std::string CSettingChanges::checked(const Assignment& assignment, bool raw) {
    const std::string key = normalisedKey(assignment.key);
    if (raw) {
        return assignment.value;
    }
    if (!m_settings.hasKey(key)) {
        m_settings.readKnown(assignment.key);
    }
    std::string reason;
    const auto text = guardedValue(typeOfKind(keyKind(key)), assignment.value, reason);
    if (!text) {
        throw Failure{
            .exit = ExitCode::Usage,
            .code = "bad_value",
            .message = assignment.key + " " + reason + ", not \"" + assignment.value + "\"",
            .hint = "--raw hands any text to the adapter"};
    }
    return *text;
}

Failure CSettingChanges::refusal(const std::string& key, const Reply& reply) {
    const std::string normal = normalisedKey(key);
    if (const auto automatic = m_settings.activeAutomatic(normal);
        automatic && hasLimits(keyKind(normal))) {
        return {.code = "auto_on",
                .message = key + ": refused, automatic is on",
                .adapterMessage = reply.message,
                .hint = m_hintPrefix + " set \"" + *automatic + "=false\"   (or add --manual)"};
    }
    // The adapter uses these words also when the camera's library failed.
    if (m_settings.hasKey(normal) && reply.message.starts_with("Unknown property")) {
        return {.code = "failed",
                .message = key + ": the camera's library failed at this value",
                .adapterMessage = reply.message};
    }
    const bool named = reply.message.starts_with(normal);
    const std::string reason = reply.message.empty() ? "refused" : reply.message;
    return {.code = "refused",
            .message = named ? reply.message : key + ": " + reason,
            .adapterMessage = reply.message};
}

void CSettingChanges::note(Change change, bool dryRun) {
    const std::string line = change.key + ": " + printable(change.before) + " -> " +
                             printable(change.after) + (dryRun ? "   (not done)" : "");
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

void CSettingChanges::switchOffAutomatic(const std::string& key, const ChangeOptions& options) {
    const auto automatic = m_settings.activeAutomatic(normalisedKey(key));
    if (!automatic) {
        return;
    }
    if (options.dryRun) {
        note({*automatic, "false", "true", "false", true}, true);
        return;
    }
    applyText(*automatic, "false");
}

void CSettingChanges::apply(const Assignment& assignment, const ChangeOptions& options) {
    const std::string text = checked(assignment, options.raw);
    if (options.manual) {
        switchOffAutomatic(assignment.key, options);
    }
    if (options.dryRun) {
        const Setting now = m_settings.readKnown(assignment.key);
        note({now.key, text, now.text, text, true}, true);
        return;
    }
    applyText(assignment.key, text);
}

void CSettingChanges::applyText(const std::string& key, const std::string& text) {
    const Setting before = m_settings.readKnown(key);
    const Reply reply = m_channel.setValue(key, text);
    if (!reply.done()) {
        throw refusal(key, reply);
    }
    const Setting after = m_settings.readKnown(key);
    note({after.key, text, before.text, after.text, readsAsAsked(after, text)}, false);
}

bool CSettingChanges::allMatch() const {
    return std::all_of(m_changes.begin(), m_changes.end(),
                       [](const Change& change) { return change.matches; });
}

CJson CSettingChanges::json() const {
    CJson list = CJson::array();
    for (const Change& change : m_changes) {
        list.add(CJson::object({{"key", change.key},
                                {"asked", change.asked},
                                {"before", change.before},
                                {"after", change.after},
                                {"matches", change.matches}}));
    }
    return list;
}

}  // namespace camhost
