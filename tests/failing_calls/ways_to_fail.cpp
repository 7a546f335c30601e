// SPDX-License-Identifier: MIT
#include "tests/failing_calls/ways_to_fail.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "virtual_cameras/control.h"

namespace {

constexpr std::string_view codeText = "-2147220991";
constexpr std::string_view failText = "-2147467259";  // E_FAIL, where there is no open device

constexpr WayToFail answersFalse = {VIRTUAL_CAMERAS_FAIL_FALSE, "false or null", failText};
constexpr WayToFail answersCode = {VIRTUAL_CAMERAS_FAIL_CODE, "a failing code", codeText};
constexpr WayToFail answersEmpty = {VIRTUAL_CAMERAS_FAIL_EMPTY, "empty", {}};
constexpr WayToFail throwsText = {VIRTUAL_CAMERAS_FAIL_THROW, "a thrown text", failingText};
constexpr WayToFail throwsCode = {VIRTUAL_CAMERAS_FAIL_THROW_CODE, "a thrown integer", codeText};
constexpr WayToFail throwsStandard = {VIRTUAL_CAMERAS_FAIL_THROW_STANDARD,
                                      "a thrown standard exception", failingText};

bool isOneOf(std::string_view operation, std::initializer_list<std::string_view> operations) {
    return std::find(operations.begin(), operations.end(), operation) != operations.end();
}

// Lists, texts and references.
bool canBeEmpty(std::string_view operation) {
    return operation.ends_with("::c_str") || operation.ends_with("::getName") ||
           operation.ends_with("::getItem") || operation.ends_with("::findItem") ||
           operation.ends_with("::findElement") ||
           (operation.starts_with("Grabber::getAvailable") && operation.ends_with("_")) ||
           isOneOf(operation,
                   {"IVCDPropertyElement::QueryInterface", "IVCDMapStringsProperty::getString",
                    "IVCDMapStringsProperty::getStrings"});
}

struct Explanation {
    std::string_view operation;
    std::string_view misuse;  // how it begins
};

constexpr std::string_view runsAlready = "Grabber::startLive: Live video is running already.";
constexpr std::string_view strangeFormat = "Grabber::getAvailableFPS_: The item does not belong";

constexpr auto explanations = std::to_array<Explanation>({
    // Not started, the library refuses everything.
    {"InitLibrary", ""},
    // Not ended, it is started twice.
    {"ExitLibrary", "InitLibrary: the library is initialised already."},
    // A live camera that is said to be gone, or idle, is opened, set and started once more.
    {"Grabber::isDevValid", runsAlready},
    {"Grabber::isDevValid", "Grabber::openDev: This is not possible while live"},
    {"Grabber::isLive", runsAlready},
    {"Grabber::isLive", "Grabber::setVideoFormat: This is not possible while live"},
    {"Grabber::isLive", "Grabber::setFPS: This is not possible while live"},
    {"Grabber::stopLive", runsAlready},
    {"Grabber::stopLive", "Grabber::setFPS: This is not possible while live"},
    // Without a sink it cannot start.
    {"FrameHandlerSink::create", "Grabber::startLive: There is no frame sink."},
    {"FrameHandlerSink::setSnapMode", "Grabber::startLive: There is no frame sink."},
    {"Grabber::setSinkType", "Grabber::startLive: There is no frame sink."},
    // The current norm or format comes as one that stands for nothing, and is asked about.
    {"Grabber::getVideoNorm", "Grabber::getAvailableVideoFormats_: The item does not belong"},
    {"Grabber::getVideoFormat", strangeFormat},
    // What the library throws in a delivery reaches its own thread again.
    {"MemBuffer::lock", "a listener threw"},
    {"MemBuffer::unlock", "a listener threw"},
});

}  // namespace

std::vector<WayToFail> waysToFail(const visits::RecordedCall& call) {
    if (isOneOf(call.operation, {"Grabber::~Grabber", "FrameHandlerSink::~FrameHandlerSink",
                                 "GrabberListener::deviceLost"})) {
        return {};
    }
    // The frame is dropped.
    if (call.operation == "GrabberListener::frameReady") {
        return {answersFalse};
    }
    std::vector<WayToFail> ways = {throwsText, throwsCode, throwsStandard};
    if (call.operation != "Grabber::Grabber") {
        ways.push_back(call.answersCode ? answersCode : answersFalse);
    }
    if (canBeEmpty(call.operation)) {
        ways.push_back(answersEmpty);
    }
    return ways;
}

bool explainsMisuse(std::string_view operation, std::string_view misuse) {
    return std::any_of(explanations.begin(), explanations.end(), [&](const Explanation& each) {
        return each.operation == operation && misuse.starts_with(each.misuse);
    });
}

bool explainsForeignFrames(std::string_view operation, const WayToFail& way, bool isLasting) {
    // A camera that does not tell its serial number stays open, and so does one that the
    // library does not close when it is told to.
    const bool staysUntold =
        isOneOf(operation, {"Grabber::getDev", "VideoCaptureDeviceItem::getSerialNumber"});
    const bool staysOpen =
        operation == "Grabber::closeDev" && (isLasting || way.kind == answersFalse.kind);
    return staysUntold || staysOpen;
}

bool explainsLocks(std::string_view operation, bool isLasting) {
    return isLasting && operation == "MemBuffer::unlock";
}
