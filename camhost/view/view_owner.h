// SPDX-License-Identifier: MIT
// The owner of the cameras: its one thread makes all calls of the records. It does what
// requests ask for in the order in which they came, and takes frames in between; nobody
// who reads can hold it up. Portable.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/cameras.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/view/frame_rate.h"
#include "camhost/view/jobs.h"
#include "camhost/view/recording.h"
#include "camhost/view/shown_camera.h"
#include "camhost/view/shown_settings.h"
#include "camhost/view/view_model.h"

namespace camhost {

struct ViewSetup {
    CSystem& system;
    CReport& report;
    CCameras& cameras;
    CViewModel& model;
    CJobs& jobs;
    std::int32_t firstCamera = 0;
    bool dialogs = false;
};

enum class ViewEnd { Asked, Interrupted };

class CViewOwner {
public:
    explicit CViewOwner(const ViewSetup& setup);
    CViewOwner(const CViewOwner&) = delete;
    CViewOwner& operator=(const CViewOwner&) = delete;

    // Starts the first camera. Throws a Failure.
    void begin();
    // Turns until there is an end, and finish(). What ends the view early leaves as a
    // Failure, after the video was stopped.
    ViewEnd run();

    // Jobs that wait, then one wait for a frame. False once the end was asked for.
    bool turn();
    void finish();

    const GrabCounts& counts() const { return m_counts; }
    std::uint64_t refusals() const { return m_refusals; }
    bool isLost() const { return m_camera != nullptr && m_camera->isLost(); }
    // The last camera shown, and its frames.
    CRecordChannel& channel() { return m_camera->channel(); }
    std::string pixelText() const;
    void waitForRecording();

private:
    void doJobs();
    HttpResponse done(const Job& job);
    HttpResponse doJob(const SetJob& job);
    HttpResponse doJob(const ActionJob& job);
    HttpResponse doJob(const CameraJob& job);
    HttpResponse doJob(const LiveJob& job);
    HttpResponse doJob(const SaveJob& job);
    HttpResponse doJob(const LoadJob& job);
    HttpResponse doJob(const DiffJob& job);
    HttpResponse doJob(const RecordJob& job);
    HttpResponse doJob(const ZipJob& job);
    HttpResponse doJob(const EndJob& job);
    void requireCamera(std::optional<std::int32_t> seen) const;
    void requireDevice() const;
    template <class Work>
    void whileStopped(bool needed, Work work);
    void afterChange();

    CShownCamera& shown(std::int32_t index);
    void show(CShownCamera& camera);
    void startVideo();
    void stopVideo();
    void takeTurn();
    void onLost();
    void onBack(double waitedSince);
    void onTimeout();
    void onRefused(const std::string& message);
    void takeFrame();
    void publish();
    LiveState liveState(double secondsWithoutFrame) const;
    void event(const char* kind, std::string text);
    void updateTimes();
    double now() const { return m_system.seconds(); }

    CCameras& m_cameras;
    CSystem& m_system;
    CReport& m_report;
    CViewModel& m_model;
    CJobs& m_jobs;
    const ViewSetup m_setup;
    std::map<std::int32_t, std::unique_ptr<CShownCamera>> m_shown;  // by index
    CShownCamera* m_camera = nullptr;                               // the one shown now
    CShownSettings m_settings;
    std::unique_ptr<CRecording> m_recording;  // null for none
    std::uint64_t m_recordings = 0;           // made so far
    GrabCounts m_counts;
    CFrameRate m_rate;
    std::uint64_t m_refusals = 0;
    double m_started = 0.0;
    double m_lastSign = 0.0;    // of the last frame, start or return of the camera
    double m_nextCall = 0.0;    // not before, after a loss or a refusal
    double m_lostBefore = 0.0;  // seconds of the losses that are over
    std::optional<double> m_lastFrame;
    bool m_wasTimeout = false;
    bool m_wasRefused = false;
    std::optional<ViewEnd> m_end;
};

}  // namespace camhost
