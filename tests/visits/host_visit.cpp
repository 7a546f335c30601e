// SPDX-License-Identifier: MIT
#include "tests/visits/host_visit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "tests/support/library_log.h"
#include "tests/visits/visited_camera.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

namespace visits {

namespace {

thread_local constinit bool insideHostCall = false;

class CInsideHostCall {
public:
    explicit CInsideHostCall(bool inside) noexcept : m_before(insideHostCall) {
        insideHostCall = inside;
    }
    CInsideHostCall(const CInsideHostCall&) = delete;
    CInsideHostCall& operator=(const CInsideHostCall&) = delete;
    ~CInsideHostCall() { insideHostCall = m_before; }

private:
    bool m_before;
};

// What a call answers that answers nothing.
constexpr std::int32_t nothing = -1;

}  // namespace

bool isInsideHostCall() noexcept {
    return insideHostCall;
}

CHostVisit::CHostVisit(std::string camera) : m_camera(std::move(camera)) {
    win32::runInside("SetEvent", [this] { m_signalled.store(true); });
    win32::runInside("ResetEvent", [this] { m_signalled.store(false); });
    win32::runInside("WaitForSingleObject", [this] {
        const CInsideHostCall outside(false);
        if (m_delivers) {
            deliver();
        }
        // Nobody waits for a time-out.
        if (!m_signalled.load()) {
            win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
        }
    });
}

CHostVisit::~CHostVisit() {
    for (const char* name : {"SetEvent", "ResetEvent", "WaitForSingleObject"}) {
        win32::runInside(name, {});
    }
}

void CHostVisit::deliver() {
    m_signalled.store(false);
    virtualCamerasDeliverFrame(m_camera.c_str());
    const bool isNeighbours = m_record != nullptr && m_record == m_records.front().get();
    if (virtualCamerasDeliverFrame(neighbourId) == 1 && !isNeighbours) {
        ++m_foreignFrames;
    }
}

void CHostVisit::run() {
    open();
    if (m_record != nullptr) {
        listNames();
        useSettings();
        useCommands();
        applyBlock(0);
        takeFrames("Mono8", 0);
        takeFrames("Raw8", 1);
        takeFrames("RGB24", 2);
        applyBlock(1);
        loseAndRestore();
    }
    close();
}

template <class Operation>
std::int32_t CHostVisit::call(std::string_view name, const Operation& operation) {
    m_message.refill();
    m_value.refill();
    m_status.refill();
    std::int32_t result = nothing;
    std::string what;
    try {
        const CInsideHostCall inside(true);
        result = operation();
    } catch (char* text) {
        what = text;
    } catch (std::int32_t code) {
        what = std::to_string(code);
    } catch (const std::exception& failure) {
        what = failure.what();
    }
    checkAnswer(name, result);
    note(name);
    if (result == nothing) {
        m_thrown.insert(what);
        note(" threw " + what);
    } else {
        note(" " + std::to_string(result));
    }
    note(" \"" + message() + "\" \"" + value() + "\" " + std::to_string(statusWord()) + "\n");
    return result;
}

void CHostVisit::checkAnswer(std::string_view name, std::int32_t result) {
    EXPECT_TRUE(result == 0 || result == 1 || result == nothing) << name << ": " << result;
    EXPECT_TRUE(m_status.isUntouched() || statusWord() == HOST_STATUS_DONE ||
                statusWord() == HOST_STATUS_NO_FRAME || statusWord() == HOST_STATUS_NO_DEVICE)
        << name << ": " << statusWord();
}

void CHostVisit::note(std::string_view text) {
    m_transcript += text;
}

std::string CHostVisit::message() const {
    return m_message.isUntouched() ? std::string("-") : m_message.text();
}

std::string CHostVisit::value() const {
    return m_value.isUntouched() ? std::string("-") : m_value.text();
}

std::uint32_t CHostVisit::statusWord() const {
    std::uint32_t word = 0;
    std::memcpy(&word, m_status.data(), sizeof(word));
    return word;
}

std::uint32_t* CHostVisit::status() {
    return static_cast<std::uint32_t*>(static_cast<void*>(m_status.data()));
}

void CHostVisit::open() {
    // A host whose first attempt fails asks once more.
    if (!openAll()) {
        openAll();
    }
    if (!m_records.empty()) {
        m_record = m_records.back().get();
    }
}

bool CHostVisit::openAll() {
    constexpr std::int32_t mostCameras = 4;
    ++m_listings;
    for (std::int32_t index = 0; index < mostCameras; ++index) {
        CHostMemory memory(sizeof(VideoChannelRecord));
        auto* record = static_cast<VideoChannelRecord*>(static_cast<void*>(memory.data()));
        const std::int32_t result =
            call("GetVideoChannel", [&] { return GetVideoChannel(nullptr, index, record); });
        if (result != HOST_RESULT_SUCCESS) {
            return result == HOST_RESULT_FAILURE && index != 0;
        }
        m_records.push_back(std::make_unique<VideoChannelRecord>(*record));
        note(std::string(record->deviceName) + ", " + record->serialText + ", " +
             std::to_string(record->exposure) + ", " + std::to_string(record->contrast) + ", " +
             std::to_string(record->brightness) + ", " + std::to_string(record->maxWidth) + "x" +
             std::to_string(record->maxHeight) + "\n");
    }
    return true;
}

void CHostVisit::close() {
    for (const auto& record : m_records) {
        call("CloseChannel", [&] { return record->CloseChannel(m_message, record->context); });
    }
    if (m_record != nullptr) {
        // Once more, as a host may: it shuts down what a failure has left.
        call("CloseChannel", [&] { return m_record->CloseChannel(m_message, m_record->context); });
    }
}

std::int32_t CHostVisit::get(const std::string& key) {
    return call(key, [&] {
        return m_record->GetPropertyValue(m_message, m_record->context, key.c_str(), m_value);
    });
}

std::int32_t CHostVisit::set(const std::string& key, const std::string& value) {
    return call(key + " = " + value, [&] {
        return m_record->SetPropertyValue(m_message, m_record->context, key.c_str(), value.c_str());
    });
}

std::vector<std::string> CHostVisit::numberedList(std::string_view prefix) {
    constexpr int mostEntries = 500;
    std::vector<std::string> entries;
    for (int i = 1; i < mostEntries; ++i) {
        if (get(std::string(prefix) + std::to_string(i)) != HOST_RESULT_SUCCESS ||
            value().empty()) {
            break;
        }
        entries.push_back(value());
    }
    return entries;
}

void CHostVisit::listNames() {
    constexpr std::int32_t mostNames = 500;
    for (std::int32_t index = -1; index < mostNames; ++index) {
        const std::int32_t result = call("name", [&] {
            return m_record->GetPropertyName(m_message, m_record->context, index, m_value);
        });
        if (result == HOST_RESULT_SUCCESS) {
            describe(value());
        } else if (index >= 0) {
            break;
        }
    }
    for (std::uint32_t attribute = 0; attribute < 5; ++attribute) {
        call("attribute", [&] {
            return m_record->GetPropertyAttribute(m_message, m_record->context, "framerate",
                                                  attribute, m_value);
        });
    }
}

void CHostVisit::describe(const std::string& key) {
    std::uint32_t type = 0;
    call("type of " + key, [&] {
        return m_record->GetPropertyType(m_message, m_record->context, key.c_str(), &type);
    });
    note(std::to_string(type));
    // A negative index throws where the key has a list.
    for (std::int32_t index = -1; index < 20; ++index) {
        const std::int32_t result = call("choice of " + key, [&] {
            return m_record->GetPropertyChoice(m_message, m_record->context, key.c_str(), index,
                                               m_value);
        });
        if (result == HOST_RESULT_FAILURE && index >= 0) {
            break;
        }
    }
}

void CHostVisit::useSettings() {
    std::vector<std::pair<std::string, std::string>> settings;
    for (const std::string& key : numberedList("feature_")) {
        const bool read = get(key) == HOST_RESULT_SUCCESS;
        settings.emplace_back(key, read ? value() : std::string());
    }
    // An automatic that is on would refuse the values beside it.
    for (const auto& [key, before] : settings) {
        if (before == "true") {
            set(key, "false");
        }
    }
    for (const auto& [key, before] : settings) {
        set(key, before);
    }
    for (const char* key : {"videoformat", "videonorm", "inputchannel", "pixelformat", "framerate",
                            "mode", "no such setting"}) {
        set(key, "no such value");
    }
    get("no such setting");
}

void CHostVisit::useCommands() {
    std::vector<std::string> commands = numberedList("execute_");
    commands.emplace_back("no such command");
    for (const std::string& command : commands) {
        call(command, [&] {
            return m_record->ExecuteCommand(m_message, m_record->context, command.c_str());
        });
    }
}

void CHostVisit::applyBlock(std::int32_t triggerEnable) {
    CameraParameterBlock block{};
    block.exposure = 0.01;
    block.contrast = 0.5;
    block.brightness = 0.25;
    block.triggerEnable = triggerEnable;
    block.roiWidth = 4;
    block.roiHeight = 2;
    call("block",
         [&] { return m_record->SetCameraParameters(m_message, m_record->context, &block); });
}

void CHostVisit::chooseFormat(std::uint32_t position) {
    const std::int32_t result = call("choice of format", [&] {
        return m_record->GetPropertyChoice(m_message, m_record->context, "videoformat",
                                           static_cast<std::int32_t>(position), m_value);
    });
    if (result == HOST_RESULT_SUCCESS) {
        set("videoformat", value());
    }
}

void CHostVisit::takeFrames(const char* pixelType, std::uint32_t format) {
    if (format != 0) {
        chooseFormat(format - 1);
    }
    set("pixelformat", pixelType);
    imageInfo(false);
    start();
    wait(true);
    copy();
    if (format == 1) {
        // A frame that is superseded, and one that does not come.
        wait(true);
        wait(true);
        wait(false);
        copy();
        changeWhileLive();
    }
    stop();
    copy();
}

void CHostVisit::changeWhileLive() {
    set("framerate", "15");
    set("pixelformat", "rgb24");
    imageInfo(false);
    applyBlock(0);
    start();
    wait(true);
    call("copy into nothing",
         [&] { return m_record->CopyFrame(m_message, m_record->context, nullptr, status()); });
    copy();
}

void CHostVisit::loseAndRestore() {
    start();
    wait(true);
    virtualCamerasUnplug(m_camera.c_str());
    copy();
    imageInfo(false);
    get("framerate");
    wait(false);
    stop();
    start();
    virtualCamerasPlug(m_camera.c_str());
    wait(true);
    copy();
    stop();
    start();
    wait(true);
    copy();
}

void CHostVisit::start() {
    const std::int32_t result =
        call("start", [&] { return m_record->StartAcquisition(m_message, m_record->context); });
    imageInfo(result == HOST_RESULT_SUCCESS);
}

void CHostVisit::stop() {
    call("stop", [&] { return m_record->StopAcquisition(m_message, m_record->context); });
    // A library that hides that it is live, or refuses to stop, may go on.
    if (alive().liveDevices == 0) {
        m_locksAfterStop = std::max(m_locksAfterStop, lockedBuffers(m_camera.c_str()));
    }
}

// The size counts as known only behind a successful start; what the pixels are, always.
void CHostVisit::imageInfo(bool isKnown) {
    CHostMemory memory(sizeof(ImageInfo));
    auto* image = static_cast<ImageInfo*>(static_cast<void*>(memory.data()));
    const std::int32_t result = call("image", [&] {
        return m_record->GetImageInfo(m_message, m_record->context, image, status());
    });
    if (result != HOST_RESULT_SUCCESS) {
        m_width = isKnown ? 0 : m_width;
        return;
    }
    m_pixelType = image->pixelType == HOST_PIXEL_RGB24  ? "RGB24"
                  : image->pixelType == HOST_PIXEL_RAW8 ? "Raw8"
                                                        : "Mono8";
    if (isKnown) {
        m_width = image->width;
        m_height = image->height;
    }
    note(m_pixelType + " " + std::to_string(image->width) + "x" + std::to_string(image->height) +
         "\n");
}

void CHostVisit::wait(bool delivers) {
    m_delivers = delivers;
    call("wait", [&] { return m_record->WaitFrame(m_message, m_record->context, status()); });
}

std::size_t CHostVisit::frameBytes() const {
    const auto width = static_cast<std::size_t>(m_width);
    const auto height = static_cast<std::size_t>(m_height);
    if (m_pixelType == "RGB24") {
        return 3 * width * height;
    }
    // The rows of a rebuilt mosaic are even.
    return (m_pixelType == "Raw8" ? width + width % 2 : width) * height;
}

void CHostVisit::copy() {
    if (m_width <= 0 || m_height <= 0) {
        return;
    }
    CHostMemory frame(frameBytes());
    call("copy",
         [&] { return m_record->CopyFrame(m_message, m_record->context, frame.data(), status()); });
    if (statusWord() == HOST_STATUS_DONE) {
        ++m_copiedFrames;
    }
    note({static_cast<const char*>(static_cast<const void*>(frame.data())), frame.size()});
}

}  // namespace visits
