// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_run.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <thread>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/pictures/bayer.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

constexpr double progressOnTerminal = 0.2;  // seconds between two
constexpr double progressInLog = 2.0;
constexpr std::size_t mostWaitingBytes = std::size_t{256} << 20U;
constexpr unsigned mostWriters = 4;
constexpr std::size_t fewPictures = 8;     // written before anybody wonders
constexpr double tooShortToBeNew = 0.001;  // seconds of a wait
constexpr int mostOldInARow = 16;          // a camera that goes on so is fast, not late

std::string sizeText(const FrameLayout& layout) {
    return std::to_string(layout.width) + "x" + std::to_string(layout.height) + " " +
           std::string(pixelTypeName(layout.pixelType));
}

CPictureWriter::Store writerTo(CReport& report) {
    return [&output = report.giveOutput()](const Picture&, std::span<const std::uint8_t> bytes) {
        output.write(reinterpret_cast<const char*>(bytes.data()),
                     static_cast<std::streamsize>(bytes.size()));
        if (!output.flush()) {
            throw Failure{.code = "file", .message = "can not write to the output"};
        }
    };
}

}  // namespace

CGrabRun::CGrabRun(CRecordChannel& camera, const GrabPlan& plan, CSystem& system, CReport& report,
                   GrabHooks hooks)
    : m_camera(camera),
      m_plan(plan),
      m_system(system),
      m_report(report),
      m_hooks(std::move(hooks)),
      m_waits(camera, system, m_counts),
      m_mayBeOld(plan.fresh) {
    m_counts.asked = plan.frames;
    if (plan.fresh || m_hooks.onRestored) {
        m_counts.dropped = 0;
    }
}

FrameLayout CGrabRun::readLayout() {
    return readFrameLayout(m_camera, isMadeFromColours(m_formats.current));
}

// Of live video. A camera that goes in this moment is lost as in the first wait, and was last
// seen as before the start.
void CGrabRun::updateLayout() {
    try {
        m_layout = readLayout();
    } catch (const Failure& failure) {
        if (failure.exit != ExitCode::DeviceLost) {
            throw;
        }
        m_mayDiffer = true;
    }
}

GrabEnd CGrabRun::run(const VideoFormats& formats) {
    m_formats = formats;
    m_layout = readLayout();
    CLiveVideo video(m_camera);
    updateLayout();
    try {
        return grab(video);
    } catch (const Failure&) {
        endEarly();
        throw;
    }
}

GrabEnd CGrabRun::grab(CLiveVideo& video) {
    CFrameBuffer buffer(m_layout);
    if (buffer.empty()) {
        throw badSize(m_layout);
    }
    m_counts.bytesPerFrame = frameBytes(m_layout);
    startWriting();
    m_lastProgress = m_system.seconds();
    m_waits.begin();
    m_hasBegun = true;
    const GrabEnd end = loop(buffer);
    m_waits.updateTimes();
    if (m_report.terminal()) {
        m_report.progress(progressLine(m_counts));
    }
    video.stop();
    if (!buffer.intact()) {
        throw wrotePastBuffer();
    }
    finishWriting();
    return end;
}

void CGrabRun::startWriting() {
    if (m_plan.format != PictureFormat::None) {
        const std::size_t capacity =
            std::max<std::size_t>(2, mostWaitingBytes / m_counts.bytesPerFrame);
        const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostWriters);
        m_writer = m_plan.toOutput
                       ? std::make_unique<CPictureWriter>(capacity, 1, writerTo(m_report))
                       : std::make_unique<CPictureWriter>(capacity, threads);
    }
}

// There is an earlier failure to tell of; what it left to write is written.
void CGrabRun::endEarly() {
    if (m_hasBegun) {
        m_waits.updateTimes();
    }
    try {
        finishWriting();
    } catch (const Failure&) {
        return;
    }
}

std::vector<std::string> CGrabRun::files() const {
    std::vector<std::string> whole;
    if (m_writer) {
        const std::set<std::string> written = m_writer->written();
        std::copy_if(m_files.begin(), m_files.end(), std::back_inserter(whole),
                     [&](const std::string& name) { return written.contains(name); });
    }
    return whole;
}

void CGrabRun::finishWriting() {
    if (!m_writer) {
        return;
    }
    if (const std::size_t waiting = m_writer->waiting(); waiting > fewPictures) {
        m_report.message("writing the last " + std::to_string(waiting) + " pictures ...");
    }
    m_writer->finish();
}

GrabEnd CGrabRun::loop(CFrameBuffer& buffer) {
    while (m_counts.frames < m_plan.frames) {
        if (m_system.interrupted()) {
            return GrabEnd::Interrupted;
        }
        if (const auto end = step(buffer)) {
            return *end;
        }
        showProgress();
    }
    return GrabEnd::Complete;
}

std::optional<GrabEnd> CGrabRun::step(CFrameBuffer& buffer) {
    if (m_hooks.betweenWaits && !m_waits.isLost()) {
        m_hooks.betweenWaits();
    }
    const WaitOutcome outcome = m_waits.wait();
    if (outcome.restoredAfter) {
        m_report.message(restoredLine(*outcome.restoredAfter));
        m_mayBeOld = m_plan.fresh;
        m_mayDiffer = true;
        if (m_hooks.onRestored) {
            return mend(buffer, outcome);
        }
    }
    if (outcome.end == WaitEnd::Frame && m_mayDiffer && m_hooks.wasReset && m_hooks.wasReset()) {
        return mend(buffer, outcome);
    }
    switch (outcome.end) {
        case WaitEnd::Lost:
        case WaitEnd::StillLost:
            return m_waits.searchOn(outcome, m_plan.patience, m_report);
        case WaitEnd::TimedOut:
            return onTimeout();
        case WaitEnd::Frame:
            takeFrame(buffer, outcome);
            break;
    }
    return std::nullopt;
}

// What came so far is of a camera as after power-up.
std::optional<GrabEnd> CGrabRun::mend(CFrameBuffer& buffer, const WaitOutcome& outcome) {
    if (outcome.end == WaitEnd::Frame && m_waits.copy(buffer)) {
        drop();
    }
    m_hooks.onRestored();
    return outcome.end == WaitEnd::TimedOut ? onTimeout() : std::nullopt;
}

void CGrabRun::drop() {
    m_counts.dropped = m_counts.dropped.value_or(0) + 1;
}

// Others would be taken for those of the grab. A loss within one wait looks like a time-out.
void CGrabRun::requireSamePictures() {
    ImageInfo image{};
    std::uint32_t status = 0;
    if (!m_mayDiffer || !m_camera.imageInfo(image, status).done()) {
        return;  // gone again: looked at when it is back
    }
    m_mayDiffer = false;
    const FrameLayout found{image.width, image.height, image.pixelType, m_layout.madeFromColours};
    if (found != m_layout) {
        throw Failure{.code = "other_pictures",
                      .message = "the camera delivers " + sizeText(found) + " now, no longer " +
                                 sizeText(m_layout),
                      .hint = m_hooks.onRestored ? "" : "--reapply sets its format again"};
    }
}

std::optional<GrabEnd> CGrabRun::onTimeout() {
    m_mayDiffer = true;
    m_mayBeOld = m_plan.fresh;
    m_secondsWithoutFrame = m_waits.secondsWithoutFrame();
    if (m_secondsWithoutFrame >= m_plan.timeout) {
        return GrabEnd::TimedOut;
    }
    return std::nullopt;
}

// A frame that lay ready when it was waited for: at the start, after a time-out, after a loss.
bool CGrabRun::isOld(const WaitOutcome& outcome) {
    m_mayBeOld = m_mayBeOld && outcome.seconds < tooShortToBeNew && m_oldInARow < mostOldInARow;
    m_oldInARow = m_mayBeOld ? m_oldInARow + 1 : 0;
    return m_mayBeOld;
}

void CGrabRun::takeFrame(CFrameBuffer& buffer, const WaitOutcome& outcome) {
    requireSamePictures();
    if (!m_waits.copy(buffer)) {
        return;
    }
    if (isOld(outcome)) {
        drop();
        return;
    }
    m_waits.noteFrame();
    if (m_counts.skipped < m_plan.skip) {
        ++m_counts.skipped;
        return;
    }
    ++m_counts.frames;
    if (m_plan.format != PictureFormat::None) {
        store(buffer);
    }
}

void CGrabRun::store(const CFrameBuffer& buffer) {
    if (m_counts.frames > mostNamesAtOnce) {
        refuseExisting(m_plan, m_counts.frames);
    }
    const std::string name = m_plan.names.name(m_counts.frames);
    const auto frame = buffer.frame();
    m_writer->add({name,
                   m_plan.format,
                   m_layout,
                   {frame.begin(), frame.end()},
                   m_plan.demosaic ? bayer() : std::nullopt,
                   describeFrame()});
    if (!m_plan.toOutput) {
        m_files.push_back(name);
        m_report.detail("frame " + std::to_string(m_counts.frames) + " goes to " + name);
    }
}

std::optional<BayerOrder> CGrabRun::bayer() const {
    return bayerOf(m_layout, m_formats, m_plan.bayer);
}

std::string CGrabRun::pixelText() const {
    return camhost::pixelText(m_layout, bayer(), m_plan.bayer.has_value());
}

PngTexts CGrabRun::describeFrame() const {
    return frameTexts(m_layout, bayer(), m_plan.demosaic, m_camera.serial(),
                      m_counts.skipped + m_counts.frames);
}

void CGrabRun::showProgress() {
    const double now = m_system.seconds();
    const double pause = m_report.terminal() ? progressOnTerminal : progressInLog;
    if (now - m_lastProgress < pause || m_waits.isLost()) {
        return;
    }
    m_lastProgress = now;
    m_waits.updateTimes();
    m_report.progress(progressLine(m_counts));
}

}  // namespace camhost
