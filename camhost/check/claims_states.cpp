// SPDX-License-Identifier: MIT
// Every call before the start, while live, and after a stop.
#include "camhost/base/number_texts.h"
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

constexpr Wanted done{.result = HOST_RESULT_SUCCESS};

Wanted doneWith(std::uint32_t word) {
    return {.result = HOST_RESULT_SUCCESS, .word = word};
}

std::string present(CCheck& check, const char* key) {
    const auto text = check.value(key);
    if (!text) {
        throw NotSupported{std::string("there is no ") + key};
    }
    return *text;
}

// A block of what is set anyway, as far as settings tell it.
void parameters(CCheck& check) {
    CameraParameterBlock block{};
    const VideoChannelRecord& record = check.host().record();
    block.exposure =
        wholeNumber(check.value("exposure value abs").value_or("")).value_or(record.exposure);
    block.contrast = record.contrast;
    block.brightness = record.brightness;
    block.triggerEnable = check.value("trigger enable switch") == "true" ? 1 : 0;
    block.triggerPolarity = check.value("trigger polarity switch") == "true" ? 1 : 0;
    block.roiWidth = record.maxWidth;
    block.roiHeight = record.maxHeight;
    check.expectAnswer(check.host().setParameters(block), done);
}

void imageInfo(CCheck& check) {
    ImageInfo image{};
    check.expectAnswer(check.host().imageInfo(image), doneWith(HOST_STATUS_DONE));
}

void noFrameToWaitFor(CCheck& check) {
    check.expectAnswer(check.host().waitFrame(), doneWith(HOST_STATUS_NO_FRAME));
}

void waitLastsASecond(CCheck& check) {
    constexpr double least = 0.5;
    constexpr double most = 3.0;  // of a machine that is busy
    const double begin = check.system().seconds();
    check.host().waitFrame();
    const double seconds = check.system().seconds() - begin;
    check.expect(seconds >= least && seconds <= most, "it lasted " + fixedText(seconds, 1) + " s");
}

void noFrameToCopy(CCheck& check) {
    const ImageInfo image = check.picture();
    CGuardedBytes frame(static_cast<std::size_t>(image.width) *
                        static_cast<std::size_t>(image.height) * 3);
    check.expectAnswer(check.host().copyFrame(frame.data()), doneWith(HOST_STATUS_NO_FRAME));
    check.expect(frame.isUntouched(), "the destination was written");
}

void stop(CCheck& check) {
    check.expectAnswer(check.host().stop(), done);
}

void unknownCommand(CCheck& check) {
    check.expectAnswer(check.host().execute("no such command"),
                       {.result = HOST_RESULT_FAILURE, .said = Said::Something});
}

void getValue(CCheck& check) {
    const Answer answer = check.host().get(pixelFormatKey);
    check.expectAnswer(answer, done);
    check.expect(answer.text && !answer.text->empty(), told(answer));
}

void setValue(CCheck& check) {
    check.expectAnswer(check.host().set(pixelFormatKey, present(check, pixelFormatKey)), done);
}

void getName(CCheck& check) {
    const Answer answer = check.host().name(0);
    check.expectAnswer(answer, done);
    check.expect(answer.text && !answer.text->empty(), told(answer));
}

void getType(CCheck& check) {
    check.expectAnswer(check.host().type("videoformat"), doneWith(HOST_PROPERTY_CHOICE));
}

void getChoice(CCheck& check) {
    present(check, "videoformat");
    const Answer answer = check.host().choice("videoformat", 0);
    check.expectAnswer(answer, done);
    check.expect(answer.text && !answer.text->empty(), told(answer));
}

void getAttribute(CCheck& check) {
    check.expectAnswer(check.host().attribute(pixelFormatKey, 1), {.text = "No comment."});
}

// The same calls in both states, each as a claim of its own.
constexpr Claim stoppedClaims[] = {
    {"SetCameraParameters", parameters},
    {"GetImageInfo", imageInfo},
    {"WaitFrame finds no frame", noFrameToWaitFor},
    {"WaitFrame lasts a second", waitLastsASecond},
    {"CopyFrame finds no frame", noFrameToCopy},
    {"StopAcquisition", stop},
    {"ExecuteCommand refuses what is unknown", unknownCommand},
    {"GetPropertyValue", getValue},
    {"SetPropertyValue", setValue},
    {"GetPropertyName", getName},
    {"GetPropertyType", getType},
    {"GetPropertyChoice", getChoice},
    {"GetPropertyAttribute", getAttribute},
};

void start(CCheck& check) {
    check.expectAnswer(check.startAnswer(), done);
}

void secondStart(CCheck& check) {
    check.needLive();
    check.expectAnswer(check.host().start(),
                       {.result = HOST_RESULT_FAILURE, .said = Said::Nothing});
}

template <void (*test)(CCheck&)>
void whileLive(CCheck& check) {
    check.needLive();
    test(check);
}

void waitForFrame(CCheck& check) {
    check.expect(frameComes(check.host()), "no frame in five waits");
}

void refusedWhileLive(CCheck& check, const char* key, const std::string& wanted) {
    const std::string before = present(check, key);
    check.expectAnswer(check.host().set(key, wanted),
                       {.result = HOST_RESULT_FAILURE, .said = Said::Something});
    check.expect(check.value(key) == before, std::string(key) + " has changed");
}

void pixelFormatIsRefused(CCheck& check) {
    refusedWhileLive(check, pixelFormatKey,
                     present(check, pixelFormatKey) == "Mono8" ? "rgb24" : "mono8");
}

void videoFormatIsRefused(CCheck& check) {
    refusedWhileLive(check, "videoformat", present(check, "videoformat"));
}

constexpr Claim liveClaimTable[] = {
    {"StartAcquisition", start},
    {"StartAcquisition again is refused without a text", secondStart},
    {"SetCameraParameters", whileLive<parameters>},
    {"GetImageInfo", whileLive<imageInfo>},
    {"WaitFrame", whileLive<waitForFrame>},
    {"ExecuteCommand refuses what is unknown", whileLive<unknownCommand>},
    {"GetPropertyValue", whileLive<getValue>},
    {"SetPropertyValue refuses pixelformat", whileLive<pixelFormatIsRefused>},
    {"SetPropertyValue refuses videoformat", whileLive<videoFormatIsRefused>},
    {"GetPropertyName", whileLive<getName>},
    {"GetPropertyType", whileLive<getType>},
    {"GetPropertyChoice", whileLive<getChoice>},
    {"GetPropertyAttribute", whileLive<getAttribute>},
    {"StopAcquisition", whileLive<stop>},
};

void enterStopped(CCheck& check) {
    check.goLive();
    check.goStopped();
}

void refusedWithoutMessage(CCheck& check, Answer (*call)(CHostCalls&)) {
    CHostCalls host = check.host().withoutMessages();
    check.expectAnswer(call(host), {.result = HOST_RESULT_FAILURE});
}

constexpr Claim messageClaims[] = {
    {"GetImageInfo",
     [](CCheck& check) {
         ImageInfo image{};
         check.expectAnswer(check.host().withoutMessages().imageInfo(image),
                            doneWith(HOST_STATUS_DONE));
     }},
    {"GetPropertyValue refuses what is unknown",
     [](CCheck& check) {
         refusedWithoutMessage(check, [](CHostCalls& host) { return host.get("no such setting"); });
     }},
    {"SetPropertyValue refuses what is unknown",
     [](CCheck& check) {
         refusedWithoutMessage(check,
                               [](CHostCalls& host) { return host.set("no such setting", "1"); });
     }},
    {"ExecuteCommand refuses what is unknown",
     [](CCheck& check) {
         refusedWithoutMessage(check,
                               [](CHostCalls& host) { return host.execute("no such command"); });
     }},
    {"GetPropertyChoice of what has none",
     [](CCheck& check) {
         refusedWithoutMessage(check, [](CHostCalls& host) { return host.choice("framerate", 0); });
     }},
    {"StopAcquisition",
     [](CCheck& check) { check.expectAnswer(check.host().withoutMessages().stop(), done); }},
};

}  // namespace

ClaimGroup beforeStartClaims() {
    return {"Before the start", stoppedClaims, [](CCheck& check) { check.saveSettings(); },
            leaveStopped};
}

ClaimGroup liveClaims() {
    return {"Live", liveClaimTable, enterLive, leaveStopped};
}

ClaimGroup afterStopClaims() {
    return {"After a stop", stoppedClaims, enterStopped, leaveStopped};
}

ClaimGroup noMessageClaims() {
    return {"Without a buffer for messages", messageClaims};
}

}  // namespace camhost
