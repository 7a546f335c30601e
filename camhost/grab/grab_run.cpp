// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_run.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <thread>

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"
#include "camhost/pictures/bayer.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

constexpr double progressOnTerminal = 0.2;  // seconds between two
constexpr double progressInLog = 2.0;
constexpr std::size_t mostWaitingBytes = std::size_t{256} << 20U;
constexpr unsigned mostWriters = 4;
constexpr std::size_t fewPictures = 8;      // written before anybody wonders
constexpr std::uint32_t searchPause = 200;  // milliseconds between two searches

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

CGrabRun::CGrabRun(CRecordChannel& camera, const GrabPlan& plan, CSystem& system, CReport& report)
    : m_camera(camera), m_plan(plan), m_system(system), m_report(report) {
    m_counts.asked = plan.frames;
}

FrameLayout CGrabRun::readLayout() {
    const ImageInfo image = m_camera.readImageInfo();
    return {image.width, image.height, image.pixelType, isMadeFromColours(m_formats.current)};
}

GrabEnd CGrabRun::run(const VideoFormats& formats) {
    m_formats = formats;
    readLayout();
    CLiveVideo video(m_camera);
    m_layout = readLayout();
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
        throw Failure{.code = "bad_size",
                      .message = "the camera reports a picture of " +
                                 std::to_string(m_layout.width) + "x" +
                                 std::to_string(m_layout.height)};
    }
    m_counts.bytesPerFrame = frameBytes(m_layout);
    startWriting();
    m_started = m_lastSign = m_lastProgress = m_system.seconds();
    m_hasBegun = true;
    const GrabEnd end = loop(buffer);
    updateTimes();
    if (m_report.terminal()) {
        m_report.progress(progressLine(m_counts));
    }
    video.stop();
    if (!buffer.intact()) {
        throw Failure{.code = "internal", .message = "the adapter wrote past the frame buffer"};
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
        updateTimes();
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
    const FrameReply wait = m_camera.waitFrame();
    if (wait.status == HOST_STATUS_NO_DEVICE) {
        return onLost();
    }
    if (wait.result != HOST_RESULT_SUCCESS) {
        const std::string message = m_camera.lastMessage();
        throw Failure{.code = "refused",
                      .message = "waiting for a frame was refused: " + message,
                      .adapterMessage = message};
    }
    if (m_lost) {
        onBack();
    }
    if (wait.status == HOST_STATUS_NO_FRAME) {
        return onTimeout();
    }
    takeFrame(buffer);
    return std::nullopt;
}

std::optional<GrabEnd> CGrabRun::onLost() {
    const double now = m_system.seconds();
    if (!m_lost) {
        m_lost = true;
        m_lostAt = now;
        ++m_counts.losses;
        m_report.message("lost " + m_camera.selector() + " after frame " +
                         std::to_string(m_counts.frames) +
                         (m_plan.patience > 0.0 ? "; searching ..." : ""));
    }
    if (now - m_lostAt >= m_plan.patience) {
        return GrabEnd::Lost;
    }
    m_system.sleep(searchPause);
    return std::nullopt;
}

void CGrabRun::onBack() {
    const double now = m_system.seconds();
    m_lost = false;
    m_lostBefore += now - m_lostAt;
    m_lastSign = now;
    m_report.message("restored after " + fixedText(now - m_lostAt, 1) + " s");
}

std::optional<GrabEnd> CGrabRun::onTimeout() {
    ++m_counts.timeouts;
    m_secondsWithoutFrame = m_system.seconds() - m_lastSign;
    if (m_secondsWithoutFrame >= m_plan.timeout) {
        return GrabEnd::TimedOut;
    }
    return std::nullopt;
}

void CGrabRun::takeFrame(CFrameBuffer& buffer) {
    const FrameReply copy = m_camera.copyFrame(buffer.data());
    if (copy.status != HOST_STATUS_DONE) {
        ++m_counts.timeouts;
        return;
    }
    m_lastSign = m_system.seconds();
    if (m_counts.frames + m_counts.skipped == 0) {
        m_firstFrameAt = m_lastSign;
        m_lostBeforeFirst = m_lostBefore;
    }
    m_counts.liveSpan = m_lastSign - m_firstFrameAt - (m_lostBefore - m_lostBeforeFirst);
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
    if (m_layout.pixelType != HOST_PIXEL_RAW8) {
        return std::nullopt;
    }
    if (m_plan.bayer || m_formats.areAllGrey) {
        return m_plan.bayer;
    }
    return assumedBayer(m_formats.current, m_layout.height);
}

std::string CGrabRun::pixelText() const {
    std::string text(pixelTypeName(m_layout.pixelType));
    if (const auto order = bayer()) {
        text +=
            " " + std::string(bayerName(*order)) + (m_plan.bayer ? " as chosen" : " as delivered");
    }
    return text;
}

PngTexts CGrabRun::describeFrame() const {
    PngTexts texts{{"Software", "camhost"},
                   {"PixelType", std::string(pixelTypeName(m_layout.pixelType))}};
    if (const auto order = bayer()) {
        texts.emplace_back("BayerOrder", bayerName(*order));
        if (m_plan.demosaic) {
            texts.emplace_back("Demosaic", "fast");
        }
    }
    texts.emplace_back("RowOrder", rowOrderText(m_layout.pixelType));
    texts.emplace_back("CameraSerial", m_camera.serial());
    texts.emplace_back("FrameNumber", std::to_string(m_counts.skipped + m_counts.frames));
    return texts;
}

void CGrabRun::updateTimes() {
    const double now = m_system.seconds();
    m_counts.seconds = now - m_started;
    m_counts.lostSeconds = m_lostBefore + (m_lost ? now - m_lostAt : 0.0);
}

void CGrabRun::showProgress() {
    const double now = m_system.seconds();
    const double pause = m_report.terminal() ? progressOnTerminal : progressInLog;
    if (now - m_lastProgress < pause || m_lost) {
        return;
    }
    m_lastProgress = now;
    updateTimes();
    m_report.progress(progressLine(m_counts));
}

}  // namespace camhost
