// SPDX-License-Identifier: MIT
#include "camhost/settings/reapplied_settings.h"

#include <algorithm>
#include <map>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/settings/key_kinds.h"
#include "camhost/settings/settings_load.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

std::vector<std::string> writableKeys(const CSettings& settings) {
    std::vector<std::string> keys;
    for (const std::string& key : settings.keys()) {
        if (loadStage(key)) {
            keys.push_back(key);
        }
    }
    return keys;
}

// Norm, input channel, format, pixel format and frame rate.
bool isRefusedLive(const std::string& key) {
    switch (keyKind(key)) {
        case KeyKind::VideoNorm:
        case KeyKind::InputChannel:
        case KeyKind::VideoFormat:
        case KeyKind::PixelFormat:
        case KeyKind::FrameRate:
            return true;
        default:
            return false;
    }
}

}  // namespace

CReappliedSettings::CReappliedSettings(CRecordChannel& camera, CSettings& settings, CSystem& system,
                                       CReport& report, std::string hintPrefix,
                                       std::vector<Change> made)
    : m_camera(camera),
      m_settings(settings),
      m_report(report),
      m_watch(camera, system, writableKeys(settings)),
      m_made(std::move(made)),
      m_changes(camera, settings, report, std::move(hintPrefix)) {
    m_changes.becomeARuns("grab");
    noteHeld();
}

void CReappliedSettings::noteHeld() {
    for (const Change& change : m_made) {
        if (const Setting now = m_settings.read(change.key); now.problem.empty()) {
            m_held[change.key] = now.text;
        }
    }
}

bool CReappliedSettings::wasReset() {
    return std::any_of(m_held.begin(), m_held.end(), [this](const auto& held) {
        const auto automatic = m_settings.automaticOf(held.first);
        if (automatic && m_settings.read(*automatic).text == "true") {
            return false;
        }
        const Setting now = m_settings.read(held.first);
        return now.problem.empty() && !sameValue(now.type, held.second, now.text);
    });
}

SettingsFile CReappliedSettings::remembered() {
    std::map<std::string, std::string> texts;
    for (const WatchedSetting& setting : m_watch.settings()) {
        texts[setting.key] = setting.text;
    }
    // A loss that the adapter mended within one wait may have gone unseen.
    for (const Change& change : m_made) {
        texts[change.key] = change.after;
    }
    SettingsFile file;
    for (const auto& [key, text] : texts) {
        // What an automatic governs is its own.
        const auto automatic = m_settings.automaticOf(key);
        const auto state = automatic ? texts.find(*automatic) : texts.end();
        if (state == texts.end() || state->second != "true" || !hasLimits(keyKind(key))) {
            file.settings.emplace_back(key, text);
        }
    }
    return file;
}

bool CReappliedSettings::wantsStop(const SettingsFile& file) {
    return std::any_of(file.settings.begin(), file.settings.end(), [&](const auto& setting) {
        if (!isRefusedLive(setting.first)) {
            return false;
        }
        const Setting now = m_settings.read(setting.first);
        return now.problem.empty() && !sameValue(now.type, setting.second, now.text);
    });
}

void CReappliedSettings::writeAgain() {
    const SettingsFile file = remembered();
    const std::size_t before = m_changes.changes().size();
    const bool stops = wantsStop(file);
    if (stops) {
        m_camera.stop();
    }
    CSettingsLoad load(m_report, m_settings, m_changes);
    load.run(file);
    if (stops) {
        if (const Reply reply = m_camera.start(); !reply.done()) {
            throw Failure{.code = "refused",
                          .message = "live video does not start again: " + reply.message,
                          .adapterMessage = reply.message};
        }
    }
    noteHeld();
    const std::size_t written = m_changes.changes().size() - before;
    m_report.message(written == 0   ? "no setting had to be written again"
                     : written == 1 ? "1 setting written again"
                                    : std::to_string(written) + " settings written again");
}

}  // namespace camhost
