// SPDX-License-Identifier: MIT
#include "tests/camhost_logic/checked_adapter.h"

#include <algorithm>
#include <cstring>

#include "tests/camhost_logic/checked_state.h"

namespace camhost::test {

CheckedAdapter* current = nullptr;

bool is(Wrong wrong) {
    return current->wrong == wrong;
}

void write(char* to, const std::string& text) {
    if (to != nullptr) {
        const std::size_t length = std::min<std::size_t>(text.size(), HOST_TEXT_BYTES - 1);
        std::memcpy(to, text.data(), length);
        to[length] = '\0';
    }
}

std::int32_t refuse(char* message, const std::string& text) {
    if (is(Wrong::MessageWithoutEnd) && text.size() >= HOST_TEXT_BYTES) {
        std::memcpy(message, text.data(), HOST_TEXT_BYTES);
        return 1;
    }
    write(message, text);
    return 1;
}

CheckedCamera* cameraOf(void* context) {
    auto* camera = static_cast<CheckedCamera*>(context);
    return camera == nullptr || camera->closed ? nullptr : camera;
}

namespace {

constexpr std::int32_t width = 4;
constexpr std::int32_t height = 2;

std::uint32_t pixelCode(const CheckedCamera& camera) {
    const std::string& name = camera.settings.at("pixelformat");
    if (name == "Mono8") {
        return HOST_PIXEL_MONO8;
    }
    return name == "Raw8" ? HOST_PIXEL_RAW8 : HOST_PIXEL_RGB24;
}

std::int32_t imageInfo(char*, void* context, ImageInfo* image, std::uint32_t* status) {
    const CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    const std::uint32_t own = is(Wrong::HostsOwnWritten) ? 0 : image->hostOwn;
    const std::int32_t line = is(Wrong::LineWidthInBytes) ? width * 3 : width;
    const bool wrongCode = is(Wrong::PixelCode) && pixelCode(*camera) == HOST_PIXEL_RAW8;
    *image = {own,   width,  height, line, wrongCode ? 0 : pixelCode(*camera), 0, 0,
              width, height, 0,      0};
    if (is(Wrong::NegativeWidth)) {
        image->width = image->lineWidth = image->regionWidth = -width;
    }
    *status = HOST_STATUS_DONE;
    return 0;
}

std::int32_t start(char* message, void* context) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    if (camera->live) {
        if (is(Wrong::SecondStartSaysWhy)) {
            write(message, "already live");
        }
        return 1;
    }
    ProcessResources& held = current->system->held;
    held.handles += is(Wrong::HandleLeft) ? 1U : 0U;
    held.threads += is(Wrong::ThreadLeft) ? 1U : 0U;
    camera->live = true;
    camera->wasLive = true;
    return 0;
}

std::int32_t stop(char* message, void* context) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    if (is(Wrong::StopBeforeTheStartRefused) && !camera->wasLive) {
        return refuse(message, "not live");
    }
    camera->live = false;
    camera->hasFrame = false;
    if (is(Wrong::StopStopsAll)) {
        for (const auto& each : current->cameras) {
            each->live = false;
        }
    }
    return 0;
}

std::int32_t waitFrame(char* message, void* context, std::uint32_t* status) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    if (is(Wrong::WaitBeforeTheStartIsLoss) && !camera->wasLive) {
        *status = HOST_STATUS_NO_DEVICE;
        current->system->time += 1.0;
        return refuse(message, "The video capture device is disconnected.");
    }
    const bool comes = camera->live && camera->settings["trigger enable switch"] != "true";
    const bool atOnce = is(Wrong::WaitReturnsAtOnce) && !camera->wasLive;
    current->system->time += comes ? 0.125 : (atOnce ? 0.0 : 1.0);
    camera->hasFrame = comes;
    *status = comes ? HOST_STATUS_DONE : HOST_STATUS_NO_FRAME;
    return 0;
}

std::int32_t copyFrame(char*, void* context, void* destination, std::uint32_t* status) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    *status = camera->hasFrame ? HOST_STATUS_DONE : HOST_STATUS_NO_FRAME;
    if (!camera->hasFrame) {
        return 0;
    }
    const std::uint32_t code = pixelCode(*camera);
    std::size_t bytes = std::size_t{width} * height * (code == HOST_PIXEL_RGB24 ? 3 : 1);
    bytes += is(Wrong::FrameTooLong) && code == HOST_PIXEL_RGB24 ? 1U : 0U;
    bytes -= is(Wrong::FrameTooShort) && code == HOST_PIXEL_RGB24 ? 1U : 0U;
    std::memset(destination, ++camera->frames, bytes);
    camera->hasFrame = is(Wrong::FrameNotUsedUp);
    return 0;
}

std::int32_t closeChannel(char*, void* context) {
    auto* camera = static_cast<CheckedCamera*>(context);
    if (camera == nullptr) {
        return 0;
    }
    if (camera->closed && is(Wrong::CloseTwiceRefused)) {
        return 1;
    }
    camera->closed = true;
    return 0;
}

void fillFrameEntries(VideoChannelRecord& record) {
    record.GetImageInfo = imageInfo;
    record.WaitFrame = waitFrame;
    record.CopyFrame = copyFrame;
    record.StartAcquisition = start;
    record.StopAcquisition = stop;
    record.CloseChannel = closeChannel;
}

void fillRecord(VideoChannelRecord& record, CheckedCamera& camera, bool again) {
    record.size = is(Wrong::RecordSize) ? std::uint32_t{sizeof record} : 632;
    if (is(Wrong::GapWritten)) {
        record.gap632 = 0;
    }
    record.context = again && is(Wrong::OtherContextWhenAskedAgain)
                         ? static_cast<void*>(&current->other)
                         : static_cast<void*>(&camera);
    fillFrameEntries(record);
    fillSettingEntries(record);
    write(record.deviceName, camera.name);
    write(record.serialText, camera.serial);
    record.exposure = 0.033333;
    record.contrast = -1.0;
    record.brightness = is(Wrong::FractionAboveOne) ? 51.0 : 0.2;
    record.maxWidth = width;
    record.maxHeight = height;
    if (is(Wrong::WrittenBehindTheRecord)) {
        reinterpret_cast<char*>(&record)[sizeof record] = 0;
    }
}

std::int32_t getVideoChannel(void*, std::int32_t index, VideoChannelRecord* record) {
    std::vector<CheckedCamera*> open;
    for (const auto& camera : current->cameras) {
        if (!camera->closed || is(Wrong::IndicesStay)) {
            open.push_back(camera.get());
        }
    }
    const bool all = std::all_of(current->cameras.begin(), current->cameras.end(),
                                 [](const auto& camera) { return camera->closed; });
    if (all) {
        open.clear();
        if (is(Wrong::CamerasComeBack)) {
            open.push_back(current->cameras.front().get());
        }
    }
    if (static_cast<std::size_t>(index) >= open.size()) {
        current->walked = true;
        if (is(Wrong::RecordWrittenBehindTheLast) && index < 1000) {
            record->size = 632;
        }
        return 1;
    }
    fillRecord(*record, *open[static_cast<std::size_t>(index)], current->walked);
    return 0;
}

CheckedAdapter checkedAdapter;

}  // namespace

CCheckedSystem::CCheckedSystem(Wrong wrong, std::size_t count) {
    current = &checkedAdapter;
    checkedAdapter = {};
    checkedAdapter.system = this;
    checkedAdapter.wrong = wrong;
    for (std::size_t i = 0; i < count; ++i) {
        auto camera = std::make_unique<CheckedCamera>();
        camera->name = "SIM Checked " + std::to_string(i + 1);
        camera->serial = i == 0 || wrong == Wrong::SameSerial ? "1A2B" : "77C01";
        camera->settings = ordinarySettings();
        checkedAdapter.cameras.push_back(std::move(camera));
    }
    CheckedCamera& first = *checkedAdapter.cameras.front();
    if (wrong == Wrong::LongName) {
        first.name = std::string(254, 'n');
    } else if (wrong == Wrong::SmallSerial) {
        first.serial = "1a2b";
    }
}

CCheckedSystem::~CCheckedSystem() {
    current = nullptr;
    checkedAdapter = {};
}

GetVideoChannelEntry CCheckedSystem::loadAdapter(const std::string&) {
    return getVideoChannel;
}

std::map<std::string, std::string> CCheckedSystem::settings() const {
    return checkedAdapter.cameras.front()->settings;
}

}  // namespace camhost::test
