// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_counts.h"

#include "camhost/base/number_texts.h"

namespace camhost {

double GrabCounts::framesPerSecond() const {
    const double live = seconds - lostSeconds;
    return live > 0.0 ? static_cast<double>(frames + skipped) / live : 0.0;
}

std::string progressLine(const GrabCounts& counts) {
    const double rate = counts.framesPerSecond();
    std::string line = "  " + std::to_string(counts.frames) + "/" + std::to_string(counts.asked) +
                       "  " + fixedText(rate, 1) + " fps  " +
                       fixedText(static_cast<double>(counts.bytesPerFrame) / 1048576.0, 1) +
                       " MiB/frame  timeouts " + std::to_string(counts.timeouts) + "  lost " +
                       std::to_string(counts.losses);
    if (rate > 0.0 && counts.frames < counts.asked) {
        line += "  eta " + fixedText(static_cast<double>(counts.asked - counts.frames) / rate, 1) +
                " s";
    }
    return line;
}

std::string closingLine(const GrabCounts& counts, const std::string& pixelText) {
    std::string line = "done: " + std::to_string(counts.frames) +
                       (counts.frames == 1 ? " frame in " : " frames in ") +
                       fixedText(counts.seconds, 1) + " s, " +
                       fixedText(counts.framesPerSecond(), 1) + " fps while live, timeouts " +
                       std::to_string(counts.timeouts) + ", lost " + std::to_string(counts.losses);
    if (counts.losses > 0) {
        line += " (" + fixedText(counts.lostSeconds, 1) + " s)";
    }
    return line + ", " + pixelText;
}

}  // namespace camhost
