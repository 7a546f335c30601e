// SPDX-License-Identifier: MIT
// The loop of a watch: keeps live video running, and tells what happens to the camera and
// its settings until time is up or the user ends it. Portable.
#pragma once

#include <string>

#include "camhost/base/report.h"
#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"
#include "camhost/grab/frame_waits.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/measure/watch_events.h"
#include "camhost/pictures/frame_buffer.h"
#include "camhost/settings/settings.h"
#include "camhost/settings/settings_watch.h"

namespace camhost {

class CWatchRun {
public:
    // For so many seconds; 0 has no end.
    CWatchRun(CRecordChannel& camera, CSettings& settings, CSystem& system, CReport& report,
              double seconds);

    // Starts, loops and stops; what is refused leaves as a Failure.
    GrabEnd run(const CJson& identity);
    const GrabCounts& counts() const { return m_counts; }
    std::uint64_t changes() const { return m_events.changes(); }
    const std::string& date() const { return m_date; }
    bool hasBegun() const { return m_hasBegun; }

private:
    GrabEnd loop(CFrameBuffer& buffer);
    void step(CFrameBuffer& buffer);
    void onFrame(CFrameBuffer& buffer);
    void onTimeout();
    void tellChanges();
    double now() const { return m_waits.secondsSinceBegin(); }

    CRecordChannel& m_camera;
    CSettings& m_settings;
    CSystem& m_system;
    CSettingsWatch m_watch;
    CWatchEvents m_events;
    GrabCounts m_counts;
    CFrameWaits m_waits;
    double m_seconds;
    std::string m_date;
    std::uint64_t m_timeoutsInARow = 0;
    bool m_hasBegun = false;
};

}  // namespace camhost
