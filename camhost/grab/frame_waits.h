// SPDX-License-Identifier: MIT
// One wait after the other on live video, and what each comes to: a frame, a time-out, a
// loss or its end. Counts them. Portable.
#pragma once

#include <optional>

#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/pictures/frame_buffer.h"

namespace camhost {

enum class WaitEnd { Frame, TimedOut, Lost, StillLost };

struct WaitOutcome {
    WaitEnd end = WaitEnd::TimedOut;
    double seconds = 0.0;                 // that it took
    std::optional<double> restoredAfter;  // seconds of the loss that ended with it
};

class CFrameWaits {
public:
    CFrameWaits(CRecordChannel& camera, CSystem& system, GrabCounts& counts)
        : m_camera(camera), m_system(system), m_counts(counts) {}

    // Live video runs from now on.
    void begin();
    // Throws a Failure when the adapter refuses.
    WaitOutcome wait();
    // Uses the frame of the last wait up. False when there was none, which is a time-out too.
    bool copy(CFrameBuffer& buffer);
    // The frame that was copied last is one of those that the rate is made of.
    void noteFrame();
    // Between two searches for a lost camera.
    void pause();
    // Behind a wait that found the camera gone: tells a loss once, and pauses until the next
    // search. The end once nobody is so patient (seconds).
    std::optional<GrabEnd> searchOn(const WaitOutcome& outcome, double patience, CReport& report);

    bool isLost() const { return m_lost; }
    double secondsLost() const { return m_system.seconds() - m_lostAt; }
    // Since the last frame, the start or the end of a loss.
    double secondsWithoutFrame() const { return m_system.seconds() - m_lastSign; }
    double secondsSinceBegin() const { return m_system.seconds() - m_started; }
    // Those of the counts, up to now.
    void updateTimes();

private:
    WaitOutcome lost(double seconds);

    CRecordChannel& m_camera;
    CSystem& m_system;
    GrabCounts& m_counts;
    double m_started = 0.0;
    double m_lastSign = 0.0;
    double m_lostAt = 0.0;
    double m_lostBefore = 0.0;  // seconds of the losses that are over
    double m_firstFrameAt = 0.0;
    double m_lostBeforeFirst = 0.0;  // seconds of losses before the first frame
    bool m_lost = false;
    bool m_hasFrame = false;
};

}  // namespace camhost
