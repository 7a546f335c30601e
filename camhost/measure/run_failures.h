// SPDX-License-Identifier: MIT
// How a run over live video that did not end well is told. Portable.
#pragma once

#include <optional>

#include "camhost/base/failure.h"
#include "camhost/grab/grab_counts.h"
#include "camhost/settings/settings.h"

namespace camhost {

struct RunEnd {
    GrabEnd end = GrabEnd::Complete;
    double secondsWithoutFrame = 0.0;  // until it ended for want of frames
    double timeout = 0.0;              // that was asked for
};

// Nothing when it is complete. The settings tell why there may be no frames.
std::optional<Failure> failureOf(const RunEnd& end, const GrabCounts& counts, CSettings& settings);

// Why no frame came; empty when nothing is known.
std::string noFrameHint(CSettings& settings);

}  // namespace camhost
