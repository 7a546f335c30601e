// SPDX-License-Identifier: MIT
// What the view tells of itself: the camera shown, whether it is live, its counts, a
// recording. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/camera/cameras.h"

namespace camhost {

enum class LiveState {
    Live,
    Waiting,  // no frame for over a second
    Trigger,  // the same, while the camera waits for triggers
    Lost,
    Stopped
};

// Pages hear of a change of these at once.
struct SeldomState {
    std::int32_t camera = 0;
    LiveState live = LiveState::Stopped;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::size_t rowBytes = 0;
    std::string pixelType{};
    std::uint64_t losses = 0;
    std::uint64_t refusals = 0;
    std::optional<double> rateAsked{};
    std::uint64_t recording = 0;  // its number, from 1; 0: there is none
    std::uint64_t recordingAsked = 0;
    bool recordingReady = false;
    std::string recordingProblem{};

    bool operator==(const SeldomState&) const = default;
};

// And of these now and then.
struct ViewCounters {
    double secondsWithoutFrame = 0.0;
    std::uint64_t frames = 0;  // and the number of the newest
    std::uint64_t timeouts = 0;
    std::uint64_t recorded = 0;
    std::optional<double> rateMeasured{};

    bool operator==(const ViewCounters&) const = default;
};

struct ViewState {
    SeldomState seldom;
    ViewCounters counters;
};

std::string_view liveName(LiveState live);

// Of the record's facts, which do not change.
struct CameraFacts {
    std::int32_t index = 0;
    std::string serial{};  // empty for none
    std::string name{};
    std::int32_t maxWidth = 0;
    std::int32_t maxHeight = 0;
};
std::vector<CameraFacts> factsOf(const CCameras& cameras);

CJson camerasJson(const std::vector<CameraFacts>& cameras);
// The members that come of the state alone.
void addState(CJson& json, const ViewState& state);

}  // namespace camhost
