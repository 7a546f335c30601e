// SPDX-License-Identifier: MIT
// One camera of the view: its settings, its live video, and what its frames are. The
// owner's thread. Portable.
#pragma once

#include <optional>
#include <string>

#include "camhost/grab/live_video.h"
#include "camhost/pictures/frame_texts.h"
#include "camhost/settings/settings.h"

namespace camhost {

class CShownCamera {
public:
    // The prefix is what a pasted hint must start with, such as "camhost -c 1A2B".
    CShownCamera(CRecordChannel& channel, const std::string& hintPrefix)
        : m_channel(channel), m_settings(channel, hintPrefix), m_hintPrefix(hintPrefix) {}

    CRecordChannel& channel() { return m_channel; }
    CSettings& settings() { return m_settings; }
    const std::string& hintPrefix() const { return m_hintPrefix; }

    // Both throw a Failure; a start that failed leaves the video stopped.
    void start();
    void stop();
    // A stop of which nobody wants to hear any more.
    void abandon() { m_video.reset(); }
    bool isLive() const { return m_video.has_value(); }
    // Of the last start.
    const FrameLayout& layout() const { return m_layout; }
    std::optional<BayerOrder> order() const { return bayerOf(m_layout, m_formats, {}); }
    // Whether the camera would deliver other frames now than at the last start.
    bool hasOtherLayout();

    // A lost one is searched for on and on.
    bool isLost() const { return m_lostAt.has_value(); }
    double lostAt() const { return m_lostAt.value_or(0.0); }
    void setLost(std::optional<double> at) { m_lostAt = at; }

private:
    FrameLayout readLayout();

    CRecordChannel& m_channel;
    CSettings m_settings;
    std::string m_hintPrefix;
    std::optional<CLiveVideo> m_video;
    VideoFormats m_formats;
    FrameLayout m_layout;
    std::optional<double> m_lostAt;
};

}  // namespace camhost
