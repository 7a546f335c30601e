// SPDX-License-Identifier: MIT
#include "camhost/view/view_owner.h"

#include <cmath>
#include <utility>

#include "camhost/base/number_texts.h"
#include "camhost/camera/adapter_call.h"
#include "camhost/pictures/frame_texts.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

constexpr double pauseOfCalls = 0.2;            // seconds between two searches, and after a refusal
constexpr std::uint32_t idleMilliseconds = 20;  // what a job may have to wait then
constexpr double longWait = 1.0;                // seconds without a frame that are worth telling

double rounded(double seconds) {
    return std::round(seconds * 100.0) / 100.0;
}

}  // namespace

CViewOwner::CViewOwner(const ViewSetup& setup)
    : m_cameras(setup.cameras),
      m_system(setup.system),
      m_report(setup.report),
      m_model(setup.model),
      m_jobs(setup.jobs),
      m_setup(setup),
      m_settings(setup.system) {}

ViewEnd CViewOwner::run() {
    try {
        while (turn()) {
        }
        finish();
    } catch (...) {
        updateTimes();
        for (const auto& [index, camera] : m_shown) {
            camera->abandon();
        }
        m_jobs.end();
        m_model.end();
        throw;
    }
    return m_end.value_or(ViewEnd::Asked);
}

void CViewOwner::begin() {
    m_started = now();
    m_camera = &shown(m_setup.firstCamera);
    startVideo();
    m_settings.show(*m_camera);
    m_model.setSettings(m_camera->channel().index(), m_settings.json());
    event("started", m_camera->channel().selector());
    publish();
}

bool CViewOwner::turn() {
    if (m_system.interrupted()) {
        m_end = ViewEnd::Interrupted;
    }
    doJobs();
    if (m_end) {
        return false;
    }
    if (m_settings.readOn()) {
        m_model.setSettings(m_camera->channel().index(), m_settings.json());
    }
    if (m_camera->isLive() && now() >= m_nextCall) {
        takeTurn();
    } else {
        m_system.sleep(idleMilliseconds);
    }
    publish();
    return true;
}

void CViewOwner::finish() {
    updateTimes();
    for (const auto& [index, camera] : m_shown) {
        camera->stop();
    }
    m_jobs.end();
    m_model.end();
}

CShownCamera& CViewOwner::shown(std::int32_t index) {
    std::unique_ptr<CShownCamera>& place = m_shown[index];
    if (!place) {
        CRecordChannel& channel = m_cameras.select("#" + std::to_string(index));
        const std::string named =
            channel.hasSerial() ? channel.serial() : "\"" + channel.selector() + "\"";
        place = std::make_unique<CShownCamera>(
            channel, m_cameras.all().size() == 1 ? "camhost" : "camhost -c " + named);
    }
    return *place;
}

void CViewOwner::startVideo() {
    m_camera->start();
    m_counts.bytesPerFrame = frameBytes(m_camera->layout());
    m_lastSign = now();
    m_nextCall = m_lastSign;
    m_lastFrame.reset();
    m_rate.clear();
    m_wasTimeout = false;
    m_wasRefused = false;
}

void CViewOwner::stopVideo() {
    m_camera->stop();
    m_rate.clear();
}

void CViewOwner::takeTurn() {
    const double before = now();
    try {
        const FrameReply wait = m_camera->channel().waitFrame();
        if (wait.status == HOST_STATUS_NO_DEVICE) {
            onLost();
            return;
        }
        if (wait.result != HOST_RESULT_SUCCESS) {
            onRefused("waiting for a frame was refused: " + m_camera->channel().lastMessage());
            return;
        }
        if (m_camera->isLost()) {
            onBack(before);
        }
        if (wait.status == HOST_STATUS_NO_FRAME) {
            onTimeout();
        } else if (m_camera->isLive()) {
            takeFrame();
        }
    } catch (const AdapterFailure& failure) {
        onRefused(failure.message);
    }
}

void CViewOwner::onLost() {
    m_nextCall = now() + pauseOfCalls;
    if (m_camera->isLost()) {
        return;
    }
    m_camera->setLost(now());
    ++m_counts.losses;
    m_rate.clear();
    const std::string text = lostLine(m_camera->channel().selector(), m_counts.frames);
    m_report.message(text + "; searching ...");
    event("lost", text);
}

void CViewOwner::onBack(double waitedSince) {
    const double seconds = now() - m_camera->lostAt();
    m_camera->setLost(std::nullopt);
    m_lostBefore += seconds;
    // Back at some time of this wait: what it lasted is silence of the camera.
    m_lastSign = waitedSince;
    if (m_lastFrame) {
        *m_lastFrame += seconds;
    }
    const std::string text = restoredLine(seconds);
    m_report.message(text);
    event("restored", text);
    try {
        if (m_camera->hasOtherLayout()) {
            stopVideo();
            startVideo();
        }
    } catch (const Failure& failure) {
        onRefused(failure.message);
    }
    afterChange();
}

void CViewOwner::onTimeout() {
    ++m_counts.timeouts;
    if (!m_wasTimeout) {
        event("timeout", "no frame in " + fixedText(now() - m_lastSign, 1) + " s");
    }
    m_wasTimeout = true;
}

void CViewOwner::onRefused(const std::string& message) {
    m_nextCall = now() + pauseOfCalls;
    ++m_refusals;
    if (!m_wasRefused) {
        event("refused", message);
    }
    m_wasRefused = true;
}

void CViewOwner::takeFrame() {
    std::unique_ptr<ViewFrame> frame = m_model.frames().take(m_camera->layout());
    const FrameReply copy = m_camera->channel().copyFrame(frame->buffer.data());
    if (!frame->buffer.intact()) {
        throw wrotePastBuffer();
    }
    if (copy.status != HOST_STATUS_DONE) {
        m_model.frames().giveBack(std::move(frame));
        onTimeout();
        return;
    }
    m_wasTimeout = false;
    m_wasRefused = false;
    m_lastSign = now();
    m_counts.liveSpan += m_lastFrame ? m_lastSign - *m_lastFrame : 0.0;
    m_lastFrame = m_lastSign;
    m_rate.add(m_lastSign);
    frame->order = m_camera->order();
    frame->number = ++m_counts.frames;
    frame->camera = m_camera->channel().index();
    frame->serial = m_camera->channel().serial();
    frame->taken = std::chrono::steady_clock::now();
    const SharedFrame shared = m_model.addFrame(std::move(frame));
    if (m_recording) {
        m_recording->add(*shared);
    }
}

LiveState CViewOwner::liveState(double secondsWithoutFrame) const {
    if (!m_camera->isLive()) {
        return LiveState::Stopped;
    }
    if (m_camera->isLost()) {
        return LiveState::Lost;
    }
    if (secondsWithoutFrame < longWait) {
        return LiveState::Live;
    }
    return m_settings.text("trigger enable switch") == "true" ? LiveState::Trigger
                                                              : LiveState::Waiting;
}

void CViewOwner::publish() {
    const double time = now();
    const FrameLayout& layout = m_camera->layout();
    ViewState state;
    SeldomState& seldom = state.seldom;
    ViewCounters& counters = state.counters;
    counters.secondsWithoutFrame = m_camera->isLive() ? rounded(time - m_lastSign) : 0.0;
    counters.frames = m_counts.frames;
    counters.timeouts = m_counts.timeouts;
    counters.rateMeasured = m_rate.at(time);
    seldom.camera = m_camera->channel().index();
    seldom.live = liveState(counters.secondsWithoutFrame);
    seldom.width = layout.width;
    seldom.height = layout.height;
    seldom.rowBytes = rowBytes(layout);
    seldom.pixelType = pixelTypeName(layout.pixelType);
    seldom.losses = m_counts.losses;
    seldom.refusals = m_refusals;
    seldom.rateAsked = wholeNumber(m_settings.text("framerate"));
    if (m_recording) {
        const CRecording::Progress progress = m_recording->progress();
        seldom.recording = m_recordings;
        seldom.recordingAsked = progress.asked;
        seldom.recordingReady = progress.isReady;
        seldom.recordingProblem = progress.problem;
        counters.recorded = progress.done;
    }
    m_model.setState(state, time);
}

void CViewOwner::event(const char* kind, std::string text) {
    m_model.addEvent(rounded(now() - m_started), kind, std::move(text));
}

void CViewOwner::updateTimes() {
    m_counts.seconds = now() - m_started;
    m_counts.lostSeconds = m_lostBefore + (isLost() ? now() - m_camera->lostAt() : 0.0);
}

std::string CViewOwner::pixelText() const {
    return camhost::pixelText(m_camera->layout(), m_camera->order(), false);
}

void CViewOwner::waitForRecording() {
    if (m_recording) {
        m_recording->waitForPictures();
    }
}

}  // namespace camhost
