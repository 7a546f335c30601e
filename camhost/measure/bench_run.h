// SPDX-License-Identifier: MIT
// The loop of a bench: waits and copies, keeps nothing, and measures both. Portable.
#pragma once

#include <limits>
#include <optional>

#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"
#include "camhost/grab/frame_waits.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/measure/bench_figures.h"
#include "camhost/pictures/frame_buffer.h"

namespace camhost {

struct BenchPlan {
    double seconds = 0.0;      // 0: until there are enough frames
    std::uint64_t frames = 0;  // 0: until time is up
    double timeout = std::numeric_limits<double>::infinity();
    // Seconds to wait for a lost camera; 0 does not wait.
    double patience = std::numeric_limits<double>::infinity();
};

class CBenchRun {
public:
    // The figures hold the rates already.
    CBenchRun(CRecordChannel& camera, const BenchPlan& plan, CSystem& system, CReport& report,
              BenchFigures& figures);

    // Starts, loops and stops; what is refused leaves as a Failure.
    GrabEnd run(bool areColoursMadeRaw);
    bool hasBegun() const { return m_hasBegun; }
    // Until the run ended for want of frames.
    double secondsWithoutFrame() const { return m_secondsWithoutFrame; }

private:
    GrabEnd loop(CFrameBuffer& buffer);
    std::optional<GrabEnd> end() const;
    std::optional<GrabEnd> step(CFrameBuffer& buffer);
    std::optional<GrabEnd> onTimeout(const WaitOutcome& outcome);
    void takeFrame(CFrameBuffer& buffer, const WaitOutcome& outcome);
    void noteGap(double began);
    void tellSecond();
    void finish();

    CRecordChannel& m_camera;
    const BenchPlan& m_plan;
    CSystem& m_system;
    CReport& m_report;
    BenchFigures& m_figures;
    CFrameWaits m_waits;
    std::optional<double> m_lastFrameAt;  // when its wait returned; none after a loss
    std::optional<double> m_openGapAt;    // since when no wait is inside the adapter
    double m_lastCopy = 0.0;
    BenchSecond m_second;  // the one that is running
    double m_secondBegan = 0.0;
    double m_nextLine = 1.0;  // seconds from the start
    std::optional<double> m_processorAtStart;
    std::optional<double> m_processorAtSecond;
    double m_secondsWithoutFrame = 0.0;
    bool m_hasBegun = false;
};

}  // namespace camhost
