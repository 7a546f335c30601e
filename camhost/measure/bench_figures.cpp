// SPDX-License-Identifier: MIT
#include "camhost/measure/bench_figures.h"

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

constexpr double mebibyte = 1048576.0;

std::string leftPadded(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string rateText(const std::optional<double>& rate) {
    return rate ? fixedText(*rate, 2) + " fps" : std::string("nothing");
}

void addSeries(std::vector<std::string>& lines, const char* name, const CSampleSeries& series) {
    if (const auto summary = series.summary()) {
        lines.push_back(name + summaryText(*summary));
    }
}

std::string countLine(const GrabCounts& counts) {
    std::string line = "done: " + std::to_string(counts.frames) +
                       (counts.frames == 1 ? " frame in " : " frames in ") +
                       fixedText(counts.seconds, 1) + " s, timeouts " +
                       std::to_string(counts.timeouts) + ", lost " + std::to_string(counts.losses);
    return counts.losses > 0 ? line + " (" + fixedText(counts.lostSeconds, 1) + " s)" : line;
}

template <class Value>
void setKnown(CJson& json, const char* key, const std::optional<Value>& value) {
    if (value) {
        json.set(key, *value);
    }
}

void setSeries(CJson& json, const char* key, const CSampleSeries& series) {
    if (const auto summary = series.summary()) {
        json.set(key, summaryJson(*summary));
    }
}

double percentOf(double part, double whole) {
    return whole > 0.0 ? part * 100.0 / whole : 0.0;
}

}  // namespace

std::optional<RateFacts> BenchFigures::rateFacts() const {
    const auto measured = counts.framesPerSecond();
    if (!reportedRate || *reportedRate <= 0.0 || !measured) {
        return std::nullopt;
    }
    return RateFacts{*reportedRate, *measured,    exposure,      counts.liveSpan,
                     timedOut,      missedByHost, missedByCopies};
}

double BenchFigures::bytesPerSecond() const {
    return counts.framesPerSecond().value_or(0.0) * static_cast<double>(counts.bytesPerFrame);
}

std::string secondLine(const BenchSecond& second, const GrabCounts& counts) {
    const auto frames = static_cast<double>(second.frames);
    const double rate = second.seconds > 0.0 ? frames / second.seconds : 0.0;
    std::string line = leftPadded(fixedText(second.at, 1), 6) + " s  " +
                       std::to_string(second.frames) + " frames  " + fixedText(rate, 1) + " fps  " +
                       fixedText(rate * static_cast<double>(counts.bytesPerFrame) / mebibyte, 1) +
                       " MiB/s";
    if (second.frames > 0) {
        line += "  wait " + fixedText(second.waited * 1000.0 / frames, 1) + " ms  copy " +
                fixedText(second.copied * 1000.0 / frames, 1) + " ms";
    }
    if (second.processorSeconds) {
        line += "  cpu " + fixedText(percentOf(*second.processorSeconds, second.seconds), 0) + " %";
    }
    return line + "  timeouts " + std::to_string(counts.timeouts) + "  lost " +
           std::to_string(counts.losses);
}

std::vector<std::string> benchLines(const BenchFigures& figures) {
    const GrabCounts& counts = figures.counts;
    std::vector<std::string> lines{"rate      asked " + rateText(figures.askedRate) +
                                   ", reported " + rateText(figures.reportedRate) + ", measured " +
                                   rateText(counts.framesPerSecond())};
    if (const auto facts = figures.rateFacts()) {
        lines.push_back("limit     " + limitText(limitOf(*facts), *facts));
    }
    addSeries(lines, "interval  ", figures.intervals);
    addSeries(lines, "wait      ", figures.waits);
    addSeries(lines, "copy      ", figures.copies);
    if (counts.bytesPerFrame > 0) {
        lines.push_back("data      " + fixedText(figures.bytesPerSecond() / mebibyte, 1) +
                        " MiB/s, " + std::to_string(counts.bytesPerFrame) + " bytes a frame, " +
                        std::to_string(figures.layout.width) + "x" +
                        std::to_string(figures.layout.height) + " " +
                        std::string(pixelTypeName(figures.layout.pixelType)));
    }
    if (figures.processorSeconds) {
        lines.push_back("cpu       " +
                        fixedText(percentOf(*figures.processorSeconds, counts.seconds), 1) +
                        " % of one core, " + fixedText(*figures.processorSeconds, 2) + " s");
    }
    lines.push_back(countLine(counts));
    return lines;
}

CJson benchJson(const BenchFigures& figures) {
    const GrabCounts& counts = figures.counts;
    CJson result = CJson::object({{"frames", counts.frames}, {"seconds", counts.seconds}});
    setKnown(result, "asked_fps", figures.askedRate);
    setKnown(result, "reported_fps", figures.reportedRate);
    setKnown(result, "fps", counts.framesPerSecond());
    if (const auto facts = figures.rateFacts()) {
        const RateLimit limit = limitOf(*facts);
        result.set("limit", limitName(limit));
        result.set("limit_text", limitText(limit, *facts));
    }
    setSeries(result, "interval_ms", figures.intervals);
    setSeries(result, "wait_ms", figures.waits);
    setSeries(result, "copy_ms", figures.copies);
    result.set("mib_per_second", figures.bytesPerSecond() / mebibyte);
    result.set("bytes_per_frame", counts.bytesPerFrame);
    if (figures.processorSeconds) {
        result.set("cpu_seconds", *figures.processorSeconds);
        result.set("cpu_percent", percentOf(*figures.processorSeconds, counts.seconds));
    }
    result.set("timeouts", counts.timeouts);
    result.set("lost", counts.losses);
    result.set("lost_seconds", counts.lostSeconds);
    result.set("width", figures.layout.width);
    result.set("height", figures.layout.height);
    result.set("pixel_type", pixelTypeName(figures.layout.pixelType));
    return result;
}

}  // namespace camhost
