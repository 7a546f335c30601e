// SPDX-License-Identifier: MIT
#include "camhost/grab/frame_waits.h"

#include "camhost/base/failure.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

constexpr std::uint32_t searchPause = 200;  // milliseconds between two searches

}  // namespace

void CFrameWaits::begin() {
    m_started = m_lastSign = m_system.seconds();
}

WaitOutcome CFrameWaits::wait() {
    const double before = m_system.seconds();
    const FrameReply reply = m_camera.waitFrame();
    const double now = m_system.seconds();
    if (reply.status == HOST_STATUS_NO_DEVICE) {
        return lost(now - before);
    }
    if (reply.result != HOST_RESULT_SUCCESS) {
        const std::string message = m_camera.lastMessage();
        throw Failure{.code = "refused",
                      .message = "waiting for a frame was refused: " + message,
                      .adapterMessage = message};
    }
    WaitOutcome outcome{WaitEnd::Frame, now - before, std::nullopt};
    if (m_lost) {
        m_lost = false;
        outcome.restoredAfter = now - m_lostAt;
        m_lostBefore += now - m_lostAt;
        // Back at some time of this wait: what it lasted is silence of the camera.
        m_lastSign = before;
    }
    if (reply.status == HOST_STATUS_NO_FRAME) {
        ++m_counts.timeouts;
        outcome.end = WaitEnd::TimedOut;
    }
    return outcome;
}

WaitOutcome CFrameWaits::lost(double seconds) {
    if (m_lost) {
        return {WaitEnd::StillLost, seconds, std::nullopt};
    }
    m_lost = true;
    m_lostAt = m_system.seconds();
    ++m_counts.losses;
    return {WaitEnd::Lost, seconds, std::nullopt};
}

bool CFrameWaits::copy(CFrameBuffer& buffer) {
    const bool copied = m_camera.copyFrame(buffer.data()).status == HOST_STATUS_DONE;
    m_counts.timeouts += copied ? 0 : 1;
    return copied;
}

void CFrameWaits::noteFrame() {
    m_lastSign = m_system.seconds();
    if (!m_hasFrame) {
        m_hasFrame = true;
        m_firstFrameAt = m_lastSign;
        m_lostBeforeFirst = m_lostBefore;
    }
    m_counts.liveSpan = m_lastSign - m_firstFrameAt - (m_lostBefore - m_lostBeforeFirst);
}

void CFrameWaits::pause() {
    m_system.sleep(searchPause);
}

std::optional<GrabEnd> CFrameWaits::searchOn(const WaitOutcome& outcome, double patience,
                                             CReport& report) {
    if (outcome.end == WaitEnd::Lost) {
        report.message(lostLine(m_camera.selector(), m_counts.frames) +
                       (patience > 0.0 ? "; searching ..." : ""));
    }
    if (secondsLost() >= patience) {
        return GrabEnd::Lost;
    }
    pause();
    return std::nullopt;
}

void CFrameWaits::updateTimes() {
    const double now = m_system.seconds();
    m_counts.seconds = now - m_started;
    m_counts.lostSeconds = m_lostBefore + (m_lost ? now - m_lostAt : 0.0);
}

}  // namespace camhost
