// SPDX-License-Identifier: MIT
#include "camhost/measure/watch_run.h"

#include <algorithm>
#include <iterator>

#include "camhost/base/failure.h"
#include "camhost/base/texts.h"
#include "camhost/grab/live_video.h"
#include "camhost/measure/run_failures.h"
#include "camhost/settings/key_kinds.h"

namespace camhost {

namespace {

std::vector<std::string> watchedKeys(const CSettings& settings) {
    std::vector<std::string> keys;
    std::copy_if(settings.keys().begin(), settings.keys().end(), std::back_inserter(keys),
                 [](const std::string& key) { return isPlainSetting(keyKind(key)); });
    return keys;
}

}  // namespace

CWatchRun::CWatchRun(CRecordChannel& camera, CSettings& settings, CSystem& system, CReport& report,
                     double seconds)
    : m_camera(camera),
      m_settings(settings),
      m_system(system),
      m_watch(camera, system, watchedKeys(settings)),
      m_events(report),
      m_waits(camera, system, m_counts),
      m_seconds(seconds) {}

GrabEnd CWatchRun::run(const CJson& identity) {
    CLiveVideo video(m_camera);
    // As if made from colours, where a copy may take more room.
    const FrameLayout layout = readFrameLayout(m_camera, true);
    CFrameBuffer buffer(layout);
    if (buffer.empty()) {
        throw badSize(layout);
    }
    m_waits.begin();
    m_hasBegun = true;
    m_date = m_system.utcDate();
    try {
        m_events.start(m_date, m_camera.selector() + " \"" + printable(m_camera.name()) + "\"",
                       identity);
        const GrabEnd end = loop(buffer);
        m_waits.updateTimes();
        video.stop();
        if (!buffer.intact()) {
            throw wrotePastBuffer();
        }
        return end;
    } catch (const Failure&) {
        m_waits.updateTimes();
        throw;
    }
}

GrabEnd CWatchRun::loop(CFrameBuffer& buffer) {
    while (!m_system.interrupted()) {
        if (m_seconds > 0.0 && now() >= m_seconds) {
            return m_waits.isLost()       ? GrabEnd::Lost
                   : m_counts.frames == 0 ? GrabEnd::TimedOut
                                          : GrabEnd::Complete;
        }
        step(buffer);
    }
    return GrabEnd::Interrupted;
}

void CWatchRun::step(CFrameBuffer& buffer) {
    if (!m_waits.isLost()) {
        tellChanges();
    }
    const WaitOutcome outcome = m_waits.wait();
    if (outcome.restoredAfter) {
        m_events.restored(now(), *outcome.restoredAfter);
    }
    switch (outcome.end) {
        case WaitEnd::Lost:
            m_timeoutsInARow = 0;
            m_events.lost(now(), m_counts);
            m_waits.pause();
            break;
        case WaitEnd::StillLost:
            m_waits.pause();
            break;
        case WaitEnd::TimedOut:
            onTimeout();
            break;
        case WaitEnd::Frame:
            onFrame(buffer);
            break;
    }
}

void CWatchRun::tellChanges() {
    for (const SettingMove& move : m_watch.step()) {
        m_events.changed(now(), move);
    }
}

// Once for several in a row: the next thing to tell is how long it lasted.
void CWatchRun::onTimeout() {
    if (m_timeoutsInARow++ == 0) {
        m_events.timeout(now(), m_waits.secondsWithoutFrame(), noFrameHint(m_settings));
    }
}

void CWatchRun::onFrame(CFrameBuffer& buffer) {
    if (!m_waits.copy(buffer)) {
        return;
    }
    if (m_timeoutsInARow > 0) {
        m_events.framesAgain(now(), m_waits.secondsWithoutFrame(), m_timeoutsInARow);
        m_timeoutsInARow = 0;
    }
    m_waits.noteFrame();
    ++m_counts.frames;
}

}  // namespace camhost
