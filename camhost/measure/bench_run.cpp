// SPDX-License-Identifier: MIT
#include "camhost/measure/bench_run.h"

#include <cmath>

#include "camhost/base/failure.h"
#include "camhost/grab/live_video.h"

namespace camhost {

namespace {

std::optional<double> spent(const std::optional<double>& now, const std::optional<double>& then) {
    return now && then ? std::optional(*now - *then) : std::nullopt;
}

}  // namespace

CBenchRun::CBenchRun(CRecordChannel& camera, const BenchPlan& plan, CSystem& system,
                     CReport& report, BenchFigures& figures)
    : m_camera(camera),
      m_plan(plan),
      m_system(system),
      m_report(report),
      m_figures(figures),
      m_waits(camera, system, figures.counts) {
    m_figures.counts.asked = plan.frames;
}

GrabEnd CBenchRun::run(bool areColoursMadeRaw) {
    CLiveVideo video(m_camera);
    m_figures.layout = readFrameLayout(m_camera, areColoursMadeRaw);
    CFrameBuffer buffer(m_figures.layout);
    if (buffer.empty()) {
        throw badSize(m_figures.layout);
    }
    m_figures.counts.bytesPerFrame = frameBytes(m_figures.layout);
    m_processorAtStart = m_processorAtSecond = m_system.processorSeconds();
    m_waits.begin();
    m_secondBegan = m_system.seconds();
    m_hasBegun = true;
    try {
        const GrabEnd end = loop(buffer);
        finish();
        video.stop();
        if (!buffer.intact()) {
            throw wrotePastBuffer();
        }
        return end;
    } catch (const Failure&) {
        finish();
        throw;
    }
}

void CBenchRun::finish() {
    m_waits.updateTimes();
    m_figures.processorSeconds = spent(m_system.processorSeconds(), m_processorAtStart);
}

GrabEnd CBenchRun::loop(CFrameBuffer& buffer) {
    while (true) {
        if (const auto over = end()) {
            return *over;
        }
        if (const auto over = step(buffer)) {
            return *over;
        }
        tellSecond();
    }
}

std::optional<GrabEnd> CBenchRun::end() const {
    if (m_plan.frames > 0 && m_figures.counts.frames >= m_plan.frames) {
        return GrabEnd::Complete;
    }
    if (m_system.interrupted()) {
        return GrabEnd::Interrupted;
    }
    if (m_plan.seconds > 0.0 && m_waits.secondsSinceBegin() >= m_plan.seconds) {
        return m_waits.isLost() ? GrabEnd::Lost : GrabEnd::Complete;
    }
    return std::nullopt;
}

std::optional<GrabEnd> CBenchRun::step(CFrameBuffer& buffer) {
    noteGap(m_system.seconds());
    const WaitOutcome outcome = m_waits.wait();
    if (outcome.restoredAfter) {
        m_report.message(restoredLine(*outcome.restoredAfter));
        m_lastFrameAt.reset();
    }
    switch (outcome.end) {
        case WaitEnd::Lost:
        case WaitEnd::StillLost:
            m_lastFrameAt.reset();
            return m_waits.searchOn(outcome, m_plan.patience, m_report);
        case WaitEnd::TimedOut:
            return onTimeout(outcome);
        case WaitEnd::Frame:
            takeFrame(buffer, outcome);
            break;
    }
    return std::nullopt;
}

// Frames that come while no wait is inside the adapter are let go.
void CBenchRun::noteGap(double began) {
    const double rate = m_figures.reportedRate.value_or(0.0);
    if (m_openGapAt) {
        const double gap = began - *m_openGapAt;
        const double missed = std::floor(gap * rate);
        m_figures.missedByHost += missed;
        m_figures.missedByCopies += 2.0 * m_lastCopy >= gap ? missed : 0.0;
        m_openGapAt.reset();
    }
}

std::optional<GrabEnd> CBenchRun::onTimeout(const WaitOutcome& outcome) {
    m_figures.timedOut += outcome.seconds;
    m_secondsWithoutFrame = m_waits.secondsWithoutFrame();
    return m_secondsWithoutFrame >= m_plan.timeout ? std::optional(GrabEnd::TimedOut)
                                                   : std::nullopt;
}

void CBenchRun::takeFrame(CFrameBuffer& buffer, const WaitOutcome& outcome) {
    const double returned = m_system.seconds();
    const bool copied = m_waits.copy(buffer);
    m_lastCopy = m_system.seconds() - returned;
    m_openGapAt = returned;
    if (!copied) {
        return;
    }
    m_waits.noteFrame();
    ++m_figures.counts.frames;
    m_figures.waits.add(outcome.seconds);
    m_figures.copies.add(m_lastCopy);
    if (m_lastFrameAt) {
        m_figures.intervals.add(returned - *m_lastFrameAt);
    }
    m_lastFrameAt = returned;
    ++m_second.frames;
    m_second.waited += outcome.seconds;
    m_second.copied += m_lastCopy;
}

void CBenchRun::tellSecond() {
    const double elapsed = m_waits.secondsSinceBegin();
    if (elapsed < m_nextLine) {
        return;
    }
    const double now = m_system.seconds();
    const auto processor = m_system.processorSeconds();
    m_nextLine = std::floor(elapsed) + 1.0;
    m_second.at = elapsed;
    m_second.seconds = now - m_secondBegan;
    m_second.processorSeconds = spent(processor, m_processorAtSecond);
    m_report.message(secondLine(m_second, m_figures.counts));
    m_second = {};
    m_secondBegan = now;
    m_processorAtSecond = processor;
}

}  // namespace camhost
