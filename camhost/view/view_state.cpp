// SPDX-License-Identifier: MIT
#include "camhost/view/view_state.h"

#include <array>

namespace camhost {

std::string_view liveName(LiveState live) {
    constexpr std::array<std::string_view, 5> names{"live", "waiting", "trigger", "lost",
                                                    "stopped"};
    return names[static_cast<std::size_t>(live)];
}

std::vector<CameraFacts> factsOf(const CCameras& cameras) {
    std::vector<CameraFacts> facts;
    for (const auto& camera : cameras.all()) {
        const VideoChannelRecord& record = camera->record();
        facts.push_back({camera->index(), camera->hasSerial() ? camera->serial() : "",
                         camera->name(), record.maxWidth, record.maxHeight});
    }
    return facts;
}

CJson camerasJson(const std::vector<CameraFacts>& cameras) {
    CJson list = CJson::array();
    for (const CameraFacts& camera : cameras) {
        CJson json = CJson::object({{"index", camera.index}});
        if (!camera.serial.empty()) {
            json.set("serial", camera.serial);
        }
        json.set("name", camera.name);
        json.set("maxWidth", camera.maxWidth);
        json.set("maxHeight", camera.maxHeight);
        list.add(std::move(json));
    }
    return list;
}

void addState(CJson& json, const ViewState& state) {
    const auto& [seldom, counters] = state;
    json.set("camera", seldom.camera);
    json.set("live", liveName(seldom.live));
    json.set("secondsWithoutFrame", counters.secondsWithoutFrame);
    if (counters.frames > 0) {
        json.set("frame", CJson::object({{"number", counters.frames},
                                         {"width", seldom.width},
                                         {"height", seldom.height},
                                         {"rowBytes", seldom.rowBytes},
                                         {"pixelType", seldom.pixelType}}));
    }
    CJson rate = CJson::object();
    if (seldom.rateAsked) {
        rate.set("asked", *seldom.rateAsked);
    }
    if (counters.rateMeasured) {
        rate.set("measured", *counters.rateMeasured);
    }
    json.set("rate", std::move(rate));
    json.set("timeouts", counters.timeouts);
    json.set("losses", seldom.losses);
    json.set("frames", counters.frames);
    json.set("refusals", seldom.refusals);
    if (seldom.recording > 0) {
        CJson recording = CJson::object({{"number", seldom.recording},
                                         {"asked", seldom.recordingAsked},
                                         {"done", counters.recorded},
                                         {"ready", seldom.recordingReady}});
        if (!seldom.recordingProblem.empty()) {
            recording.set("problem", seldom.recordingProblem);
        }
        json.set("recording", std::move(recording));
    }
}

}  // namespace camhost
