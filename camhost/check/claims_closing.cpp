// SPDX-License-Identifier: MIT
// Every call with a context that is null or closed, and what closing does to the list.
#include <array>
#include <cstring>

#include "camhost/camera/adapter_call.h"
#include "camhost/camera/record_with_room.h"
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

using Call = Answer (*)(CHostCalls& host);

CHostCalls withoutContext(CCheck& check) {
    return check.host().withContext(nullptr);
}

CHostCalls closed(CCheck& check) {
    return check.host();
}

// Written memory shows as a text.
void noteWritten(Answer& answer, const CGuardedBytes& memory) {
    if (!memory.isUntouched()) {
        answer.text = "written";
    }
}

Answer imageInfo(CHostCalls& host) {
    CGuardedBytes memory(sizeof(ImageInfo));
    Answer answer = host.imageInfo(*reinterpret_cast<ImageInfo*>(memory.data()));
    noteWritten(answer, memory);
    return answer;
}

Answer copyFrame(CHostCalls& host) {
    constexpr std::size_t some = 4096;
    CGuardedBytes memory(some);
    Answer answer = host.copyFrame(memory.data());
    noteWritten(answer, memory);
    return answer;
}

Answer setParameters(CHostCalls& host) {
    return host.setParameters({});
}
Answer waitFrame(CHostCalls& host) {
    return host.waitFrame();
}
Answer start(CHostCalls& host) {
    return host.start();
}
Answer stop(CHostCalls& host) {
    return host.stop();
}
Answer execute(CHostCalls& host) {
    return host.execute("propertydialog");
}
Answer get(CHostCalls& host) {
    return host.get(pixelFormatKey);
}
Answer set(CHostCalls& host) {
    return host.set("pixelformat", "mono8");
}
Answer name(CHostCalls& host) {
    return host.name(0);
}
Answer type(CHostCalls& host) {
    return host.type("pixelformat");
}
Answer choice(CHostCalls& host) {
    return host.choice("videoformat", 0);
}
Answer attribute(CHostCalls& host) {
    return host.attribute("pixelformat", 1);
}

template <CHostCalls (*hostOf)(CCheck&), Call call>
void givesOneAndTouchesNothing(CCheck& check) {
    CHostCalls host = hostOf(check);
    const Answer answer = call(host);
    check.expectAnswer(answer, {.result = HOST_RESULT_FAILURE, .said = Said::Nothing});
    check.expect(!answer.text && !answer.word, told(answer) + "; expected nothing to be written");
}

template <CHostCalls (*hostOf)(CCheck&)>
void closeAnswersZero(CCheck& check) {
    check.expectAnswer(hostOf(check).close(), {.result = HOST_RESULT_SUCCESS});
}

template <CHostCalls (*hostOf)(CCheck&)>
constexpr auto deadClaims = std::to_array<Claim>({
    {"SetCameraParameters", givesOneAndTouchesNothing<hostOf, setParameters>},
    {"GetImageInfo", givesOneAndTouchesNothing<hostOf, imageInfo>},
    {"WaitFrame", givesOneAndTouchesNothing<hostOf, waitFrame>},
    {"CopyFrame", givesOneAndTouchesNothing<hostOf, copyFrame>},
    {"StartAcquisition", givesOneAndTouchesNothing<hostOf, start>},
    {"StopAcquisition", givesOneAndTouchesNothing<hostOf, stop>},
    {"ExecuteCommand", givesOneAndTouchesNothing<hostOf, execute>},
    {"GetPropertyValue", givesOneAndTouchesNothing<hostOf, get>},
    {"SetPropertyValue", givesOneAndTouchesNothing<hostOf, set>},
    {"GetPropertyName", givesOneAndTouchesNothing<hostOf, name>},
    {"GetPropertyType", givesOneAndTouchesNothing<hostOf, type>},
    {"GetPropertyChoice", givesOneAndTouchesNothing<hostOf, choice>},
    {"GetPropertyAttribute", givesOneAndTouchesNothing<hostOf, attribute>},
    {"CloseChannel answers 0", closeAnswersZero<hostOf>},
});

std::int32_t recordAt(CCheck& check, std::size_t index, RecordWithRoom& room) {
    return callAdapter("GetVideoChannel", [&] {
        return check.getVideoChannel()(nullptr, static_cast<std::int32_t>(index), &room.record);
    });
}

void closes(CCheck& check) {
    check.expectAnswer(check.closeAnswer(), {.result = HOST_RESULT_SUCCESS});
}

void laterOnesMoveDown(CCheck& check) {
    RecordWithRoom room;
    const VideoChannelRecord& record = room.record;
    const std::int32_t result = recordAt(check, check.place(), room);
    const std::size_t next = check.place() + 1;
    const bool isLast = next == check.all().size();
    check.expect(result == (isLast ? HOST_RESULT_FAILURE : HOST_RESULT_SUCCESS),
                 "its index answers " + std::to_string(result));
    if (!isLast) {
        const VideoChannelRecord& wanted = check.all()[next].record();
        check.expect(std::strcmp(record.serialText, wanted.serialText) == 0 &&
                         std::strcmp(record.deviceName, wanted.deviceName) == 0,
                     std::string("at its index is \"") + record.deviceName + "\"");
    }
}

void othersStay(CCheck& check) {
    check.expectAnswer(check.neighbour().get("pixelformat"), {.result = HOST_RESULT_SUCCESS});
}

// Nothing but the end of the process comes after this.
void noneComeBack(CCheck& check) {
    for (CHostCalls& each : check.all()) {
        each.close();
    }
    RecordWithRoom room;
    check.expect(recordAt(check, 0, room) == HOST_RESULT_FAILURE,
                 "there is a camera after the last was closed");
}

constexpr Claim closedClaims[] = {
    {"CloseChannel", closes},
    {"later cameras move one down", laterOnesMoveDown},
    {"the other cameras stay open", othersStay},
};
constexpr Claim lastClaims[] = {{"there are none after the last", noneComeBack}};

void close(CCheck& check) {
    check.closeCamera();
}

}  // namespace

ClaimGroup noContextClaims() {
    return {"Null context", deadClaims<withoutContext>};
}

ClaimGroup closingClaims() {
    return {"Closing", closedClaims, close};
}

ClaimGroup closedContextClaims() {
    return {"Closed context", deadClaims<closed>, close};
}

ClaimGroup endClaims() {
    return {"End", lastClaims, close};
}

}  // namespace camhost
