// SPDX-License-Identifier: MIT
#include "host/cameras.h"

#include <algorithm>
#include <functional>

#include "host/adapter_call.h"
#include "host/failure.h"
#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

// Ends the walk of an adapter that hands out a camera for every index.
constexpr std::int32_t mostCameras = 256;

using Channels = std::vector<std::unique_ptr<CChannel>>;
using Candidates = std::vector<CChannel*>;

Candidates matching(const Channels& channels, const std::function<bool(const CChannel&)>& test) {
    Candidates found;
    for (const auto& channel : channels) {
        if (test(*channel)) {
            found.push_back(channel.get());
        }
    }
    return found;
}

// Cameras write theirs without leading zeros; labels and people may not.
bool sameSerial(std::string_view serial, std::string_view wanted) {
    const auto digits = wanted.find_first_not_of('0');
    return sameIgnoringCase(serial, wanted) ||
           (digits != wanted.npos && sameIgnoringCase(serial, wanted.substr(digits)));
}

std::string candidateText(const Candidates& candidates) {
    std::string text;
    for (const CChannel* channel : candidates) {
        text += text.empty() ? "" : ", ";
        text += "#" + std::to_string(channel->index()) + " " + channel->serial() + " \"" +
                channel->name() + "\"";
    }
    return text;
}

Failure notFound(const std::string& wanted, const Channels& channels) {
    const Candidates all = matching(channels, [](const CChannel&) { return true; });
    return {ExitCode::NotFound,
            "camera_not_found",
            "no camera \"" + wanted + "\"",
            {},
            all.empty() ? "there are no cameras" : "there are: " + candidateText(all)};
}

CChannel& only(const std::string& wanted, const Candidates& found) {
    if (found.size() > 1) {
        throw Failure{ExitCode::NotFound,
                      "camera_ambiguous",
                      "\"" + wanted + "\" fits several cameras: " + candidateText(found),
                      {},
                      "choose by serial or by #index"};
    }
    return *found.front();
}

}  // namespace

CCameras::CCameras(GetVideoChannelEntry getVideoChannel) {
    for (std::int32_t index = 0; index < mostCameras; ++index) {
        VideoChannelRecord record{};
        const std::int32_t result = callAdapter(
            "GetVideoChannel", [&] { return getVideoChannel(nullptr, index, &record); });
        if (result != HOST_RESULT_SUCCESS) {
            break;
        }
        m_channels.push_back(std::make_unique<CChannel>(record, index));
    }
}

CCameras::~CCameras() {
    try {
        close();
    } catch (const Failure&) {
        m_channels.clear();
    }
}

void CCameras::close() {
    while (!m_channels.empty()) {
        const std::unique_ptr<CChannel> last = std::move(m_channels.back());
        m_channels.pop_back();
        last->close();
    }
}

CChannel& CCameras::select(const std::string& wanted) const {
    if (wanted.empty()) {
        if (m_channels.empty()) {
            throw Failure{ExitCode::NotFound, "camera_not_found", "there are no cameras", {}, {}};
        }
        if (m_channels.size() > 1) {
            const Candidates all = matching(m_channels, [](const CChannel&) { return true; });
            throw Failure{ExitCode::NotFound,
                          "camera_ambiguous",
                          "there are several cameras: " + candidateText(all),
                          {},
                          "choose one with -c"};
        }
        return *m_channels.front();
    }
    if (wanted.starts_with('#')) {
        const auto index = wholeInteger(wanted.substr(1));
        const Candidates found =
            matching(m_channels, [&](const CChannel& channel) { return channel.index() == index; });
        if (found.empty()) {
            throw notFound(wanted, m_channels);
        }
        return *found.front();
    }
    const std::function<bool(const CChannel&)> tests[] = {
        [&](const CChannel& c) { return c.hasSerial() && sameSerial(c.serial(), wanted); },
        [&](const CChannel& c) { return sameIgnoringCase(c.name(), wanted); },
        [&](const CChannel& c) { return lowered(c.name()).find(lowered(wanted)) != wanted.npos; },
    };
    for (const auto& test : tests) {
        if (const Candidates found = matching(m_channels, test); !found.empty()) {
            return only(wanted, found);
        }
    }
    throw notFound(wanted, m_channels);
}

}  // namespace camhost
