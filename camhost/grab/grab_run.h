// SPDX-License-Identifier: MIT
// The loop of a grab: waits, copies and stores until there are enough frames,
// time is up, the camera is lost for good, or the user ends it. Portable.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"
#include "camhost/grab/frame_waits.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/grab/grab_plan.h"
#include "camhost/grab/live_video.h"
#include "camhost/pictures/frame_buffer.h"
#include "camhost/pictures/frame_texts.h"
#include "camhost/pictures/picture_writer.h"

namespace camhost {

// What else is done while a grab runs; between two waits, so that no frame is taken meanwhile.
struct GrabHooks {
    std::function<void()> betweenWaits{};
    // The camera is back; the frame that ended the loss is dropped.
    std::function<void()> onRestored{};
    // Behind a time-out: the camera is as after power-up, so it was gone within the wait.
    std::function<bool()> wasReset{};
};

class CGrabRun {
public:
    CGrabRun(CRecordChannel& camera, const GrabPlan& plan, CSystem& system, CReport& report,
             GrabHooks hooks = {});

    // Starts, loops and stops. What is refused leaves as a Failure, after the
    // video was stopped.
    GrabEnd run(const VideoFormats& formats);

    const GrabCounts& counts() const { return m_counts; }
    const FrameLayout& layout() const { return m_layout; }
    // Of a run that a Failure ended too.
    bool hasBegun() const { return m_hasBegun; }
    // Those that were written whole, in the order of their frames.
    std::vector<std::string> files() const;
    // Until the run ended for want of frames.
    double secondsWithoutFrame() const { return m_secondsWithoutFrame; }
    std::optional<BayerOrder> bayer() const;
    // "Mono8", or "Raw8 BGGR as delivered".
    std::string pixelText() const;

private:
    FrameLayout readLayout();
    void updateLayout();
    GrabEnd loop(CFrameBuffer& buffer);
    std::optional<GrabEnd> step(CFrameBuffer& buffer);
    std::optional<GrabEnd> onTimeout();
    std::optional<GrabEnd> mend(CFrameBuffer& buffer, const WaitOutcome& outcome);
    void requireSamePictures();
    void drop();
    bool isOld(const WaitOutcome& outcome);
    void takeFrame(CFrameBuffer& buffer, const WaitOutcome& outcome);
    void store(const CFrameBuffer& buffer);
    void startWriting();
    void finishWriting();
    void endEarly();
    GrabEnd grab(CLiveVideo& video);
    PngTexts describeFrame() const;
    void showProgress();

    CRecordChannel& m_camera;
    const GrabPlan& m_plan;
    CSystem& m_system;
    CReport& m_report;
    GrabHooks m_hooks;
    GrabCounts m_counts;
    CFrameWaits m_waits;
    FrameLayout m_layout;
    VideoFormats m_formats;
    std::vector<std::string> m_files;
    std::unique_ptr<CPictureWriter> m_writer;  // none when nothing is stored
    double m_lastProgress = 0.0;
    double m_secondsWithoutFrame = 0.0;
    int m_oldInARow = 0;
    bool m_mayBeOld = false;   // a frame may lie ready that is older than its wait
    bool m_mayDiffer = false;  // the camera may have gone and come back since the last frame
    bool m_hasBegun = false;
};

}  // namespace camhost
