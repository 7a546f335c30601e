// SPDX-License-Identifier: MIT
#include "host/setting_changes.h"

#include <algorithm>
#include <utility>

#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

bool readsAsAsked(const Setting& after, const std::string& asked) {
    return sameValue(after.type, asked, after.text) ||
           (keyShape(after.key) == KeyShape::PixelFormat && sameIgnoringCase(asked, after.text));
}

}  // namespace

Assignment parseAssignment(const std::string& text) {
    const auto equals = text.find('=');
    if (equals == text.npos || equals == 0) {
        throw Failure{ExitCode::Usage,
                      "usage",
                      "\"" + text + "\" is not KEY=VALUE",
                      {},
                      "quote keys that hold blanks: \"gain value range=12\""};
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

CSettingChanges::CSettingChanges(CChannel& channel, CSettings& settings, CReport& report,
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
    const auto text = guardedValue(typeOfShape(keyShape(key)), assignment.value, reason);
    if (!text) {
        throw Failure{ExitCode::Usage,
                      "bad_value",
                      assignment.key + " " + reason + ", not \"" + assignment.value + "\"",
                      {},
                      "--raw hands any text to the adapter"};
    }
    return *text;
}

Failure CSettingChanges::refusal(const std::string& key, const Reply& reply) {
    if (const auto automatic = m_settings.activeAutomatic(normalisedKey(key));
        automatic && hasLimits(keyShape(normalisedKey(key)))) {
        return {ExitCode::Refused, "auto_on", key + ": refused, automatic is on", reply.message,
                m_hintPrefix + " set \"" + *automatic + "=false\"   (or add --manual)"};
    }
    // The adapter uses these words also when the camera's library failed.
    if (m_settings.hasKey(normalisedKey(key)) && reply.message.starts_with("Unknown property")) {
        return {ExitCode::Refused,
                "failed",
                key + ": the camera's library failed at this value",
                reply.message,
                {}};
    }
    const bool named = reply.message.starts_with(normalisedKey(key));
    return {
        ExitCode::Refused,
        "refused",
        named ? reply.message : key + ": " + (reply.message.empty() ? "refused" : reply.message),
        reply.message,
        {}};
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

CData CSettingChanges::data() const {
    CData list = CData::array();
    for (const Change& change : m_changes) {
        CData data;
        data.set("key", change.key);
        data.set("asked", change.asked);
        data.set("before", change.before);
        data.set("after", change.after);
        data.set("matches", change.matches);
        list.add(std::move(data));
    }
    return list;
}

}  // namespace camhost
