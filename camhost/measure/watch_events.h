// SPDX-License-Identifier: MIT
// What a watch tells while it runs, each as a line of text or one JSON object, and its
// totals. Portable.
#pragma once

#include <cstdint>
#include <string>

#include "camhost/base/json.h"
#include "camhost/base/report.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/settings/settings_watch.h"

namespace camhost {

// All throw a Failure when nobody reads what they tell any longer.
class CWatchEvents {
public:
    explicit CWatchEvents(CReport& report) : m_report(report) {}

    // Times are seconds since this one.
    void start(const std::string& date, const std::string& camera, const CJson& identity);
    void lost(double at, const GrabCounts& counts);
    void restored(double at, double secondsLost);
    // The first of several in a row.
    void timeout(double at, double secondsWithoutFrame, const std::string& hint);
    void framesAgain(double at, double secondsWithoutFrame, std::uint64_t timeouts);
    void changed(double at, const SettingMove& move);

    std::uint64_t changes() const { return m_changes; }

private:
    void tell(const char* event, double at, const std::string& text, const CJson& facts);

    CReport& m_report;
    std::uint64_t m_changes = 0;
};

std::string watchedLine(const GrabCounts& counts, std::uint64_t changes);
CJson watchedJson(const GrabCounts& counts, std::uint64_t changes, const std::string& date);

}  // namespace camhost
