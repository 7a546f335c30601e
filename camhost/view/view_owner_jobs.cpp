// SPDX-License-Identifier: MIT
// What the owner does for requests.
#include <algorithm>
#include <sstream>
#include <utility>

#include "camhost/base/texts.h"
#include "camhost/settings/actions.h"
#include "camhost/settings/setting_changes.h"
#include "camhost/settings/settings_compare.h"
#include "camhost/settings/settings_load.h"
#include "camhost/settings/value_guards.h"
#include "camhost/view/view_owner.h"

namespace camhost {

namespace {

constexpr double longestJobs = 0.1;  // seconds until the next frame gets its turn

// For what tells its progress to a command: the view tells it by events and answers.
class CUnseenReport {
public:
    CReport& report() { return m_report; }

private:
    std::ostringstream m_text;
    CReport m_report{m_text, m_text};
};

// The adapter refuses these while live, or changes what frames look like.
bool wantsStoppedVideo(const std::string& key) {
    switch (keyKind(normalisedKey(key))) {
        case KeyKind::VideoFormat:
        case KeyKind::VideoNorm:
        case KeyKind::InputChannel:
        case KeyKind::PixelFormat:
            return true;
        default:
            return false;
    }
}

std::string changeText(const std::string& key, const std::string& before,
                       const std::string& after) {
    return key + ": " + before + " -> " + after;
}

std::string attachment(const std::string& name) {
    return "attachment; filename=\"" + name + "\"";
}

}  // namespace

void CViewOwner::doJobs() {
    const double start = now();
    while (now() - start < longestJobs) {
        const std::optional<CJobs::Waiting> waiting = m_jobs.next();
        if (!waiting) {
            return;
        }
        waiting->slot->set(done(waiting->job));
        m_model.wake();
    }
}

HttpResponse CViewOwner::done(const Job& job) {
    try {
        HttpResponse response = std::visit([this](const auto& each) { return doJob(each); }, job);
        publish();
        return response;
    } catch (const Failure& failure) {
        ++m_refusals;
        event("refused", failure.message);
        publish();
        return failureResponse(409, failure);
    }
}

// What a page shows may be of the camera before.
void CViewOwner::requireCamera(std::optional<std::int32_t> seen) const {
    if (seen && *seen != m_camera->channel().index()) {
        throw Failure{.code = "camera_changed", .message = "another camera is shown by now"};
    }
}

// Starts and stops would end the search.
void CViewOwner::requireDevice() const {
    if (m_camera->isLost()) {
        throw Failure{.exit = ExitCode::DeviceLost,
                      .code = "device_lost",
                      .message = "the camera is lost, and searched for"};
    }
}

void CViewOwner::afterChange() {
    m_settings.readAll();
    m_model.setSettings(m_camera->channel().index(), m_settings.json());
}

// Settings are read again however it ends.
template <class Work>
void CViewOwner::whileStopped(bool needed, Work work) {
    const bool pauses = needed && m_camera->isLive();
    if (pauses) {
        requireDevice();
        stopVideo();
    }
    try {
        work();
    } catch (const Failure&) {
        afterChange();
        if (pauses) {
            startVideo();
        }
        throw;
    }
    afterChange();
    if (pauses) {
        startVideo();
    }
}

HttpResponse CViewOwner::doJob(const SetJob& job) {
    requireCamera(job.camera);
    CUnseenReport unseen;
    CRecordChannel& channel = m_camera->channel();
    CSettings& settings = m_camera->settings();
    const bool pauses = wantsStoppedVideo(job.key);
    if (pauses) {
        // What is refused beforehand stops nothing.
        CSettingChanges(channel, settings, unseen.report(), m_camera->hintPrefix())
            .applyAll({{job.key, job.text}}, {.manual = job.manual, .dryRun = true});
    }
    CSettingChanges changes(channel, settings, unseen.report(), m_camera->hintPrefix());
    whileStopped(pauses, [&] { changes.applyAll({{job.key, job.text}}, {.manual = job.manual}); });
    for (const Change& change : changes.changes()) {
        event("setting", changeText(change.key, change.before, change.after));
    }
    return jsonResponse(200, CJson::object({{"changes", changes.json()}}));
}

HttpResponse CViewOwner::doJob(const ActionJob& job) {
    requireCamera(job.camera);
    const std::string name = normalisedKey(job.command);
    if (name == propertyPage) {
        // Its window would hold up every other call.
        throw Failure{.code = "refused",
                      .message = "the property page is not shown from here",
                      .hint = m_camera->hintPrefix() + " exec " + propertyPage};
    }
    CSettings& settings = m_camera->settings();
    const SettingTexts before = readTexts(settings);
    whileStopped(false, [&] {
        executeAction(m_camera->channel(), settings, m_system, job.command,
                      {m_camera->hintPrefix(), job.manual, m_setup.dialogs});
    });
    const std::vector<TextChange> changes = changedTexts(before, readTexts(settings));
    event("setting", name + ": done");
    for (const TextChange& change : changes) {
        event("setting", changeText(change.key, change.before, change.after));
    }
    return jsonResponse(200,
                        CJson::object({{"command", name}, {"changes", textChangesJson(changes)}}));
}

HttpResponse CViewOwner::doJob(const CameraJob& job) {
    const auto& all = m_cameras.all();
    const auto wanted = std::find_if(all.begin(), all.end(), [&](const auto& channel) {
        return channel->index() == job.camera;
    });
    if (wanted == all.end()) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_not_found",
                      .message = "there is no camera " + std::to_string(job.camera)};
    }
    if (&m_camera->channel() == wanted->get()) {
        return jsonResponse(200, CJson::object());
    }
    if (!m_shown.contains(job.camera) && (*wanted)->neverOpened()) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_not_open",
                      .message = (*wanted)->selector() + " \"" + (*wanted)->name() +
                                 "\" did not open; in use elsewhere?"};
    }
    CShownCamera& next = shown(job.camera);
    // A lost one goes on being lost, and is searched for when it is shown again.
    if (!m_camera->isLost()) {
        stopVideo();
    }
    m_camera = &next;
    m_lastSign = now();
    m_nextCall = m_lastSign;
    event("camera", next.channel().selector() + " " + next.channel().name());
    m_settings.show(next);
    m_model.setSettings(job.camera, m_settings.json());
    if (!next.isLive()) {
        startVideo();
    }
    return jsonResponse(200, CJson::object());
}

HttpResponse CViewOwner::doJob(const LiveJob& job) {
    if (job.live != m_camera->isLive()) {
        requireDevice();
        if (job.live) {
            startVideo();
        } else {
            stopVideo();
        }
        event(job.live ? "started" : "stopped", m_camera->channel().selector());
    }
    return jsonResponse(200, CJson::object());
}

HttpResponse CViewOwner::doJob(const SaveJob&) {
    CUnseenReport unseen;
    const CRecordChannel& channel = m_camera->channel();
    HttpResponse response =
        jsonResponse(200, settingsFileText(readSettingsFile(channel, m_camera->settings(),
                                                            m_system.utcDate(), unseen.report())));
    response.headers.emplace_back(
        "Content-Disposition",
        attachment(fileStem(channel.hasSerial() ? channel.serial() : "", channel.index()) +
                   "_settings.json"));
    return response;
}

HttpResponse CViewOwner::doJob(const LoadJob& job) {
    CUnseenReport unseen;
    CSettings& settings = m_camera->settings();
    CSettingChanges changes(m_camera->channel(), settings, unseen.report(), m_camera->hintPrefix());
    CSettingsLoad load(unseen.report(), settings, changes);
    const bool pauses =
        std::any_of(job.file.settings.begin(), job.file.settings.end(), [&](const auto& saved) {
            return wantsStoppedVideo(saved.first) && loadStage(saved.first) &&
                   settings.hasKey(saved.first) && settings.read(saved.first).text != saved.second;
        });
    whileStopped(pauses, [&] { load.run(job.file); });
    for (const Change& change : changes.changes()) {
        event("setting", changeText(change.key, change.before, change.after));
    }
    CJson failed = CJson::array();
    for (const auto& [key, message] : load.problems()) {
        failed.add(CJson::object({{"key", key}, {"message", message}}));
    }
    return jsonResponse(200, CJson::object({{"changes", changes.json()}, {"failed", failed}}));
}

HttpResponse CViewOwner::doJob(const DiffJob& job) {
    CJson list = CJson::array();
    for (const SettingDifference& each : differencesFrom(job.file, m_camera->settings())) {
        list.add(differenceJson(each));
    }
    return jsonResponse(200, CJson::object({{"differences", std::move(list)}}));
}

HttpResponse CViewOwner::doJob(const RecordJob& job) {
    m_recording.reset();
    if (job.frames == 0) {
        return jsonResponse(202, CJson::object());
    }
    m_recording = std::make_unique<CRecording>(job.frames, PictureChoice{job.bayer, job.demosaic},
                                               [this] { m_model.wake(); });
    return jsonResponse(202, CJson::object({{"number", ++m_recordings}}));
}

HttpResponse CViewOwner::doJob(const ZipJob&) {
    if (!m_recording || !m_recording->progress().isReady) {
        return failureResponse(404, {.code = "no_recording", .message = "no recording is ready"});
    }
    return m_recording->zip();
}

HttpResponse CViewOwner::doJob(const EndJob&) {
    m_end = ViewEnd::Asked;
    return jsonResponse(200, CJson::object());
}

}  // namespace camhost
