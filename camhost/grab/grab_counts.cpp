// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_counts.h"

#include "camhost/base/number_texts.h"

namespace camhost {

std::optional<double> GrabCounts::framesPerSecond() const {
    const std::uint64_t taken = frames + skipped;
    if (taken < 2 || liveSpan <= 0.0) {
        return std::nullopt;
    }
    return static_cast<double>(taken - 1) / liveSpan;
}

std::string lostLine(const std::string& camera, std::uint64_t frames) {
    return "lost " + camera + " after frame " + std::to_string(frames);
}

std::string restoredLine(double seconds) {
    return "restored after " + fixedText(seconds, 1) + " s";
}

std::string progressLine(const GrabCounts& counts) {
    const auto rate = counts.framesPerSecond();
    std::string line = "  " + std::to_string(counts.frames) + "/" + std::to_string(counts.asked) +
                       "  " + (rate ? fixedText(*rate, 1) + " fps  " : "") +
                       fixedText(static_cast<double>(counts.bytesPerFrame) / 1048576.0, 1) +
                       " MiB/frame  timeouts " + std::to_string(counts.timeouts) + "  lost " +
                       std::to_string(counts.losses);
    if (rate && counts.frames < counts.asked) {
        line += "  eta " + fixedText(static_cast<double>(counts.asked - counts.frames) / *rate, 1) +
                " s";
    }
    return line;
}

std::string closingLine(const GrabCounts& counts, const std::string& pixelText) {
    const auto rate = counts.framesPerSecond();
    std::string line = "done: " + std::to_string(counts.frames) +
                       (counts.frames == 1 ? " frame in " : " frames in ") +
                       fixedText(counts.seconds, 1) + " s, " +
                       (rate ? fixedText(*rate, 1) + " fps while live, " : "") + "timeouts " +
                       std::to_string(counts.timeouts) + ", lost " + std::to_string(counts.losses);
    if (counts.losses > 0) {
        line += " (" + fixedText(counts.lostSeconds, 1) + " s)";
    }
    if (counts.dropped) {
        line += ", dropped " + std::to_string(*counts.dropped);
    }
    return line + ", " + pixelText;
}

}  // namespace camhost
