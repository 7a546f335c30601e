// SPDX-License-Identifier: MIT
#include "tests/camhost_logic/made_up_adapter.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "camhost/application/application.h"

namespace camhost::test {

namespace {

constexpr auto failingCode = static_cast<std::int32_t>(0x80004005);

// The entry points are plain functions; they find their data here.
CMadeUpSystem* current = nullptr;

void copyText(char* to, const std::string& text) {
    std::snprintf(to, HOST_TEXT_BYTES, "%s", text.c_str());
}

MadeUpCamera& cameraOf(void* context) {
    return *static_cast<MadeUpCamera*>(context);
}

std::string normal(const char* key) {
    std::string text(key);
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    });
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// The numbered lists are made from the tables.
bool listEntry(const MadeUpCamera& camera, const std::string& key, std::string& value) {
    const bool feature = key.starts_with("feature_");
    if (camera.noLists || (!feature && !key.starts_with("execute_"))) {
        return false;
    }
    std::vector<std::string> names = camera.commands;
    if (feature) {
        names.clear();
        for (const auto& [name, text] : camera.values) {
            names.push_back(name);
        }
    }
    const std::size_t number = std::stoul(key.substr(8));
    if (number < 1 || number > names.size() + 1) {
        return false;
    }
    value = number > names.size() ? std::string() : names[number - 1];
    return true;
}

std::int32_t unknown(char* message, const char* key) {
    copyText(message, "Unknown property \"" + std::string(key) + "\"");
    return 1;
}

std::int32_t getValue(char* message, void* context, const char* key, char* value) {
    MadeUpCamera& camera = cameraOf(context);
    const std::string name = normal(key);
    if (camera.throwingCode.contains(name)) {
        throw failingCode;
    }
    if (camera.throwingOther.contains(name)) {
        throw name;
    }
    if (camera.textOverrun > 0) {
        std::memset(value, 'x', HOST_TEXT_BYTES + camera.textOverrun);
        return 0;
    }
    std::string text;
    if (listEntry(camera, name, text)) {
        copyText(value, text);
        return 0;
    }
    const auto found = camera.values.find(name);
    if (found == camera.values.end()) {
        return unknown(message, key);
    }
    copyText(value, found->second);
    return 0;
}

std::int32_t setValue(char* message, void* context, const char* key, const char* value) {
    MadeUpCamera& camera = cameraOf(context);
    const std::string name = normal(key);
    if (!camera.values.contains(name)) {
        return unknown(message, key);
    }
    camera.log.push_back(name + "=" + value);
    const bool automatic =
        name.starts_with("exposure value") && camera.values["exposure auto switch"] == "true";
    if (automatic) {
        copyText(message, name + " can not be set, while automatic is enabled.");
        return 1;
    }
    if (const auto refusal = camera.refusals.find(name); refusal != camera.refusals.end()) {
        copyText(message, refusal->second);
        return 1;
    }
    const auto other = camera.readBack.find(name);
    camera.values[name] = other != camera.readBack.end() ? other->second : value;
    return 0;
}

std::int32_t getType(char*, void*, const char* key, std::uint32_t* type) {
    const std::string name(key);
    const bool choice = name.find(" switch") != name.npos || name == "videoformat";
    *type = choice ? HOST_PROPERTY_CHOICE : HOST_PROPERTY_TEXT;
    return 0;
}

std::int32_t getChoice(char*, void* context, const char* key, std::int32_t index, char* choice) {
    const std::vector<std::string>& list = cameraOf(context).choices[key];
    if (static_cast<std::size_t>(index) >= list.size()) {
        return 1;
    }
    copyText(choice, list[static_cast<std::size_t>(index)]);
    return 0;
}

std::int32_t execute(char* message, void* context, const char* command) {
    MadeUpCamera& camera = cameraOf(context);
    camera.log.push_back("execute " + normal(command));
    if (camera.throwingOther.contains(normal(command))) {
        throw normal(command);
    }
    const auto refusal = camera.refusals.find(normal(command));
    if (refusal != camera.refusals.end()) {
        copyText(message, refusal->second);
        return 1;
    }
    if (const auto effect = camera.effects.find(normal(command)); effect != camera.effects.end()) {
        camera.values[effect->second.first] = effect->second.second;
    }
    return 0;
}

std::int32_t setParameters(char*, void* context, const CameraParameterBlock* block) {
    MadeUpCamera& camera = cameraOf(context);
    camera.parameters = *block;
    camera.log.push_back("parameters");
    if (camera.values.contains("exposure value abs")) {
        char text[32];
        std::snprintf(text, sizeof text, "%f", block->exposure);
        camera.values["exposure auto switch"] = "false";
        camera.values["exposure value abs"] = text;
    }
    return 0;
}

std::int32_t imageInfo(char* message, void* context, ImageInfo* image, std::uint32_t* status) {
    const MadeUpCamera& camera = cameraOf(context);
    if (camera.imageThrows) {
        throw failingCode;
    }
    if (camera.missing) {
        copyText(message, "No valid video capture device selected.");
        *status = HOST_STATUS_NO_DEVICE;
        return 1;
    }
    image->width = camera.width;
    image->height = camera.height;
    image->pixelType = camera.pixelType;
    image->regionWidth = camera.width;
    image->regionHeight = camera.height;
    *status = 0;
    return 0;
}

std::int32_t start(char* message, void* context) {
    MadeUpCamera& camera = cameraOf(context);
    camera.log.emplace_back("start");
    if (camera.startRefused || camera.mostStarts-- <= 0) {
        copyText(message, "no bandwidth");
        return 1;
    }
    camera.live = true;
    camera.missing = camera.goesAtStart;
    return 0;
}

std::int32_t stop(char*, void* context) {
    cameraOf(context).log.emplace_back("stop");
    cameraOf(context).live = false;
    return 0;
}

std::int32_t waitFrame(char* message, void* context, std::uint32_t* status) {
    MadeUpCamera& camera = cameraOf(context);
    Wait wait = camera.otherwise;
    if (!camera.waits.empty()) {
        wait = camera.waits.front();
        camera.waits.pop_front();
    }
    current->time += wait.seconds;
    camera.missing = wait.missing;
    camera.width = wait.width > 0 ? wait.width : camera.width;
    for (const auto& [key, text] : wait.values) {
        camera.values[key] = text;
    }
    *status = wait.status;
    if (!wait.message.empty()) {
        copyText(message, wait.message);
    }
    return wait.result;
}

std::int32_t copyFrame(char*, void* context, void* destination, std::uint32_t* status) {
    const MadeUpCamera& camera = cameraOf(context);
    current->time += camera.copySeconds;
    auto* bytes = static_cast<std::uint8_t*>(destination);
    std::copy(camera.frame.begin(), camera.frame.end(), bytes);
    std::fill_n(bytes + camera.frame.size(), camera.overrun, std::uint8_t{1});
    *status = 0;
    return 0;
}

std::int32_t closeChannel(char*, void* context) {
    cameraOf(context).log.emplace_back("close");
    if (cameraOf(context).closeThrows) {
        throw failingCode;
    }
    return 0;
}

std::int32_t getVideoChannel(void*, std::int32_t index, VideoChannelRecord* record) {
    if (static_cast<std::size_t>(index) >= current->cameras.size()) {
        return 1;
    }
    MadeUpCamera& camera = current->cameras[static_cast<std::size_t>(index)];
    if (camera.openThrows) {
        throw failingCode;
    }
    *record = {};
    record->size = 632;
    record->context = &camera;
    record->SetCameraParameters = setParameters;
    record->GetImageInfo = imageInfo;
    record->WaitFrame = waitFrame;
    record->CopyFrame = copyFrame;
    record->StartAcquisition = start;
    record->StopAcquisition = stop;
    record->ExecuteCommand = execute;
    record->GetPropertyValue = getValue;
    record->SetPropertyValue = setValue;
    copyText(record->deviceName, camera.name);
    copyText(record->serialText, camera.serial);
    record->exposure = camera.exposure;
    record->contrast = -1.0;
    record->brightness = -1.0;
    record->maxWidth = camera.width;
    record->maxHeight = camera.height;
    record->GetPropertyType = getType;
    record->GetPropertyChoice = getChoice;
    record->CloseChannel = closeChannel;
    return 0;
}

}  // namespace

CMadeUpSystem::CMadeUpSystem() {
    current = this;
}

CMadeUpSystem::~CMadeUpSystem() {
    current = nullptr;
}

void CMadeUpSystem::setVariable(const std::string& name, const std::string& value) {
    variables[name] = value;
}

GetVideoChannelEntry CMadeUpSystem::loadAdapter(const std::string&) {
    return getVideoChannel;
}

MadeUpCamera ordinaryCamera() {
    MadeUpCamera camera;
    camera.values = {
        {"exposure auto switch", "true"},
        {"exposure value abs", "0.033333"},
        {"exposure value abs max", "30.000000"},
        {"exposure value abs min", "0.000100"},
        {"framerate", "30.000000"},
        {"gain value range", "10"},
        {"gain value range max", "100"},
        {"gain value range min", "0"},
        {"pixelformat", "Mono8"},
        {"trigger enable switch", "false"},
        {"trigger mode strings", "Edge"},
        {"videoformat", "Y800 (4x2)"},
        {"videoformat_0", "Y800 (4x2)"},
        {"videoformats", "Y800 (4x2)"},
    };
    camera.commands = {"exposure one push", "propertydialog"};
    camera.choices["videoformat"] = {"Y800 (4x2)", "Y800 (8x4)"};
    camera.choices["exposure auto switch"] = {"false", "true"};
    camera.choices["trigger enable switch"] = {"false", "true"};
    camera.frame = {0, 1, 2, 3, 4, 5, 6, 7};
    return camera;
}

Outcome run(CMadeUpSystem& system, const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    Outcome outcome;
    outcome.exit = runApplication(arguments, system, out, err);
    outcome.out = out.str();
    outcome.err = err.str();
    return outcome;
}

}  // namespace camhost::test
