// SPDX-License-Identifier: MIT
#include "camhost/camera/cameras.h"

#include <exception>
#include <functional>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"
#include "camhost/camera/adapter_call.h"
#include "camhost/camera/record_with_room.h"

namespace camhost {

namespace {

// Ends the walk of an adapter that hands out a camera for every index.
constexpr std::int32_t mostCameras = 256;

using Channels = std::vector<std::unique_ptr<CRecordChannel>>;
using Candidates = std::vector<CRecordChannel*>;

Candidates matching(const Channels& channels,
                    const std::function<bool(const CRecordChannel&)>& test) {
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
    for (const CRecordChannel* channel : candidates) {
        text += text.empty() ? "" : ", ";
        text += "#" + std::to_string(channel->index()) + " " + channel->serial() + " \"" +
                channel->name() + "\"";
    }
    return text;
}

std::string candidateText(const Channels& channels) {
    return candidateText(matching(channels, [](const CRecordChannel&) { return true; }));
}

bool isBareNumber(const std::string& wanted) {
    return wanted.find_first_not_of("0123456789") == wanted.npos;
}

Candidates byIndex(const std::string& digits, const Channels& channels) {
    const auto index = wholeInteger(digits);
    return matching(channels,
                    [&](const CRecordChannel& channel) { return channel.index() == index; });
}

Failure notFound(const std::string& wanted, const Channels& channels) {
    std::string hint =
        channels.empty() ? "there are no cameras" : "there are: " + candidateText(channels);
    if (isBareNumber(wanted) && !byIndex(wanted, channels).empty()) {
        hint = "a number is a serial; the camera at that index is -c \"#" + wanted + "\"";
    }
    return {.exit = ExitCode::NotFound,
            .code = "camera_not_found",
            .message = "no camera \"" + wanted + "\"",
            .hint = hint};
}

CRecordChannel& theOnly(const Channels& channels) {
    if (channels.empty()) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_not_found",
                      .message = "there are no cameras"};
    }
    if (channels.size() > 1) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_ambiguous",
                      .message = "there are several cameras: " + candidateText(channels),
                      .hint = "choose one with -c"};
    }
    return *channels.front();
}

// The first of these that fits any camera decides.
Candidates byText(const std::string& wanted, const Channels& channels) {
    const std::function<bool(const CRecordChannel&)> tests[] = {
        [&](const auto& c) { return c.hasSerial() && sameSerial(c.serial(), wanted); },
        [&](const auto& c) { return folded(c.name()) == folded(wanted); },
        [&](const auto& c) { return folded(c.name()).find(folded(wanted)) != wanted.npos; },
    };
    for (const auto& test : tests) {
        if (Candidates found = matching(channels, test); !found.empty()) {
            return found;
        }
        // A bare number is meant for a serial, or for an index by mistake: never for a
        // digit in some name.
        if (isBareNumber(wanted)) {
            break;
        }
    }
    return {};
}

}  // namespace

CJson identityJson(const CRecordChannel& camera) {
    CJson identity = CJson::object({{"index", camera.index()}});
    if (camera.hasSerial()) {
        identity.set("serial", camera.serial());
    }
    identity.set("name", camera.name());
    return identity;
}

// By way of the other one, so that those that are open are closed when a later one throws.
CCameras::CCameras(GetVideoChannelEntry getVideoChannel) : CCameras() {
    m_getVideoChannel = getVideoChannel;
    for (std::int32_t index = 0; index < mostCameras; ++index) {
        RecordWithRoom room;
        VideoChannelRecord& record = room.record;
        const std::int32_t result = callAdapter(
            "GetVideoChannel", [&] { return getVideoChannel(nullptr, index, &record); });
        if (result != HOST_RESULT_SUCCESS) {
            break;
        }
        m_channels.push_back(std::make_unique<CRecordChannel>(record, index));
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
    std::exception_ptr first;
    while (!m_channels.empty()) {
        const std::unique_ptr<CRecordChannel> last = std::move(m_channels.back());
        m_channels.pop_back();
        try {
            last->close();
        } catch (const Failure&) {
            first = first ? first : std::current_exception();
        }
    }
    if (first) {
        std::rethrow_exception(first);
    }
}

CRecordChannel& CCameras::select(const std::string& wanted) const {
    if (wanted.empty()) {
        return theOnly(m_channels);
    }
    const Candidates found = wanted.starts_with('#') ? byIndex(wanted.substr(1), m_channels)
                                                     : byText(wanted, m_channels);
    if (found.empty()) {
        throw notFound(wanted, m_channels);
    }
    if (found.size() > 1) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_ambiguous",
                      .message = "\"" + wanted + "\" fits several cameras: " + candidateText(found),
                      .hint = "choose by serial or by #index"};
    }
    return *found.front();
}

}  // namespace camhost
