// SPDX-License-Identifier: MIT
#include "camhost/measure/watch_events.h"

#include <cmath>

#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

double milliseconds(double seconds) {
    return std::round(seconds * 1000.0) / 1000.0;
}

std::string timeText(double at) {
    constexpr std::size_t width = 9;
    const std::string text = fixedText(at, 3);
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string secondsText(double seconds) {
    return fixedText(seconds, 1) + " s";
}

}  // namespace

void CWatchEvents::tell(const char* event, double at, const std::string& text, const CJson& facts) {
    m_report.line(timeText(at) + "  " + text);
    CJson json =
        CJson::object({{"schema", "camhost/1"}, {"event", event}, {"seconds", milliseconds(at)}});
    for (const auto& [key, value] : facts.members()) {
        json.set(key, value);
    }
    m_report.event(json);
    m_report.deliver();
}

void CWatchEvents::start(const std::string& date, const std::string& camera,
                         const CJson& identity) {
    m_report.line("watching " + camera + " since " + date);
    m_report.event(CJson::object({{"schema", "camhost/1"},
                                  {"event", "start"},
                                  {"seconds", 0.0},
                                  {"date", date},
                                  {"camera", identity}}));
    m_report.deliver();
}

void CWatchEvents::lost(double at, const GrabCounts& counts) {
    tell("lost", at, "lost after frame " + std::to_string(counts.frames) + "; searching ...",
         CJson::object({{"frames", counts.frames}}));
}

void CWatchEvents::restored(double at, double secondsLost) {
    tell("restored", at, restoredLine(secondsLost),
         CJson::object({{"lost_seconds", milliseconds(secondsLost)}}));
}

void CWatchEvents::timeout(double at, double secondsWithoutFrame, const std::string& hint) {
    CJson facts = CJson::object({{"silent_seconds", milliseconds(secondsWithoutFrame)}});
    if (!hint.empty()) {
        facts.set("hint", hint);
    }
    tell("timeout", at,
         "time-out: no frame in " + secondsText(secondsWithoutFrame) +
             (hint.empty() ? "" : "; " + hint),
         facts);
}

void CWatchEvents::framesAgain(double at, double secondsWithoutFrame, std::uint64_t timeouts) {
    tell("frames", at,
         "frames again after " + secondsText(secondsWithoutFrame) + ", time-outs " +
             std::to_string(timeouts),
         CJson::object(
             {{"silent_seconds", milliseconds(secondsWithoutFrame)}, {"timeouts", timeouts}}));
}

void CWatchEvents::changed(double at, const SettingMove& move) {
    ++m_changes;
    tell("changed", at, move.key + ": " + printable(move.before) + " -> " + printable(move.after),
         CJson::object({{"key", move.key}, {"before", move.before}, {"after", move.after}}));
}

std::string watchedLine(const GrabCounts& counts, std::uint64_t changes) {
    const auto rate = counts.framesPerSecond();
    std::string line = "watched for " + secondsText(counts.seconds) + ": " +
                       std::to_string(counts.frames) +
                       (counts.frames == 1 ? " frame, " : " frames, ") +
                       (rate ? fixedText(*rate, 1) + " fps while live, " : "") + "timeouts " +
                       std::to_string(counts.timeouts) + ", lost " + std::to_string(counts.losses);
    if (counts.losses > 0) {
        line += " (" + secondsText(counts.lostSeconds) + ")";
    }
    return line + ", changes " + std::to_string(changes);
}

CJson watchedJson(const GrabCounts& counts, std::uint64_t changes, const std::string& date) {
    CJson result = CJson::object(
        {{"date", date}, {"frames", counts.frames}, {"seconds", milliseconds(counts.seconds)}});
    if (const auto rate = counts.framesPerSecond()) {
        result.set("fps", *rate);
    }
    result.set("timeouts", counts.timeouts);
    result.set("lost", counts.losses);
    result.set("lost_seconds", milliseconds(counts.lostSeconds));
    result.set("changes", changes);
    return result;
}

}  // namespace camhost
