// SPDX-License-Identifier: MIT
// The settings of the checked adapter.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "tests/camhost_logic/checked_state.h"

namespace camhost::test {

namespace {

std::string normal(std::string key) {
    if (!is(Wrong::LettersCount)) {
        std::transform(key.begin(), key.end(), key.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    }
    if (!is(Wrong::BlanksCount)) {
        key.erase(key.find_last_not_of(' ') + 1);
    }
    return key;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.ends_with(end);
}

// The numbered lists, made from the table; nothing behind the end.
bool listEntry(const CheckedCamera& camera, const std::string& key, std::string& text) {
    std::vector<std::string> names{"propertydialog"};
    if (key.starts_with("feature_")) {
        names.clear();
        for (const auto& each : camera.settings) {
            names.push_back(each.first);
        }
    } else if (!key.starts_with("execute_")) {
        return false;
    }
    const auto number = static_cast<std::size_t>(std::atoi(key.c_str() + 8));
    text = number >= 1 && number <= names.size() ? names[number - 1] : "";
    if (is(Wrong::FeaturesWithoutEnd) && key.starts_with("feature_") && text.empty()) {
        text = names.back();
    }
    return number >= 1;
}

std::int32_t writeValue(char* message, char* value, const std::string& key,
                        const std::string& text) {
    if (is(Wrong::LongValue) && key == "videoformats") {
        std::memset(value, 'x', HOST_TEXT_BYTES + 44);
        value[HOST_TEXT_BYTES + 44] = '\0';
        return 0;
    }
    const bool strange = is(Wrong::BytesThatAreNoText) && key == "trigger mode strings";
    write(value, strange ? "Edge\xFF" : text);
    if (is(Wrong::NeedlessMessage) && key == "framerate") {
        write(message, "read");
    }
    return is(Wrong::StrangeResult) && key == "videonorm" ? 7 : 0;
}

std::int32_t getValue(char* message, void* context, const char* key, char* value) {
    const CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    const std::string name = normal(key);
    std::string text;
    if (listEntry(*camera, name, text)) {
        write(value, text);
        return 0;
    }
    const auto found = camera->settings.find(name);
    if (found != camera->settings.end()) {
        return writeValue(message, value, name, found->second);
    }
    if (is(Wrong::UnknownKeyRead) && name == "no such setting" && message != nullptr) {
        write(value, "0");
        return 0;
    }
    return refuse(message, "Unknown property \"" + std::string(key) + "\"");
}

std::int32_t setSwitch(std::string& setting, const std::string& value) {
    const bool on = is(Wrong::AnyTextIsOn) ? value != "false" : value == "true";
    setting = on ? "true" : "false";
    return 0;
}

// Whether it is wrong on purpose in taking it.
bool mayPass(double value, double least, double most) {
    return (value < least && is(Wrong::BelowTaken)) || (value > most && is(Wrong::AboveTaken)) ||
           (value >= least && value <= most);
}

// Wrong in one kind of number alone, so that one line fails.
std::int32_t setNumber(char* message, CheckedCamera& camera, const std::string& key,
                       const std::string& value) {
    const bool isWhole = endsWith(key, " range");
    const double number = std::atof(value.c_str());
    const double least = std::atof(camera.settings[key + " min"].c_str());
    const double most = std::atof(camera.settings[key + " max"].c_str());
    const bool automatic =
        key.starts_with("exposure") && camera.settings["exposure auto switch"] == "true";
    if (automatic && !is(Wrong::AutomaticIgnored)) {
        return refuse(message, key + " can not be set, while automatic is enabled.");
    }
    const bool inside = number >= least && number <= most;
    const bool refusesLeast = is(Wrong::MinimumRefused) && isWhole && number == least;
    if (refusesLeast || !(inside || (isWhole && mayPass(number, least, most)))) {
        if (is(Wrong::RefusalSets) && !isWhole) {
            camera.settings[key] = std::to_string(most);
        }
        return refuse(message, key + " must be within its limits!");
    }
    const bool less = is(Wrong::MaximumReadsLess) && !isWhole && number == most;
    camera.settings[key] = isWhole ? std::to_string(std::atoi(value.c_str()))
                                   : std::to_string(less ? number - 1.0 : number);
    return 0;
}

std::int32_t setPixelFormat(char* message, CheckedCamera& camera, std::string value) {
    if (camera.live && !is(Wrong::PixelFormatTakenWhileLive)) {
        return refuse(message, "Can not set pixelformat, while live video is running.");
    }
    std::transform(value.begin(), value.end(), value.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    for (const char* known : {"Mono8", "Raw8", "RGB24"}) {
        std::string small(known);
        std::transform(small.begin(), small.end(), small.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        if (small == value) {
            camera.settings["pixelformat"] = known;
            if (is(Wrong::SettingsShared)) {
                for (const auto& each : current->cameras) {
                    each->settings["pixelformat"] = known;
                }
            }
            return 0;
        }
    }
    return refuse(message, "Unsupported pixelformat");
}

std::int32_t setText(char* message, CheckedCamera& camera, const std::string& key,
                     const std::string& value) {
    if (key == "trigger mode strings" && value != "Edge" && value != "Level") {
        return refuse(message, "Valid values are:\"Edge\" \"Level\" ");
    }
    if (key == "videoformat" && camera.live) {
        return refuse(message, "Can not set videoformat, while live video is running.");
    }
    const bool isList = key == "videoformats" || endsWith(key, " min") || endsWith(key, " max");
    if (isList && !is(Wrong::ListCanBeSet)) {
        return refuse(message, key + " can not be set.");
    }
    camera.settings[key] = value;
    return 0;
}

std::int32_t setValue(char* message, void* context, const char* key, const char* value) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    const std::string name = normal(key);
    const auto found = camera->settings.find(name);
    if (found == camera->settings.end()) {
        if (is(Wrong::UnknownKeySet) && name == "no such setting" && message != nullptr) {
            return 0;
        }
        return refuse(message, "Unknown property \"" + std::string(key) + "\"");
    }
    if (endsWith(name, " switch")) {
        return setSwitch(found->second, value);
    }
    if (endsWith(name, " range") || endsWith(name, " abs")) {
        return setNumber(message, *camera, name, value);
    }
    if (name == "pixelformat") {
        return setPixelFormat(message, *camera, value);
    }
    return setText(message, *camera, name, value);
}

bool isHidden(const std::string& key) {
    return key.find('_') != key.npos || endsWith(key, " min") || endsWith(key, " max");
}

std::int32_t getName(char*, void* context, std::int32_t index, char* name) {
    const CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    std::vector<std::string> names;
    for (const auto& each : camera->settings) {
        if (!isHidden(each.first) || is(Wrong::HiddenNameListed)) {
            names.push_back(each.first);
        }
    }
    if (is(Wrong::NamesOutOfOrder)) {
        std::reverse(names.begin(), names.end());
    }
    const bool behind = index < 0 || static_cast<std::size_t>(index) >= names.size();
    if (behind && is(Wrong::NamesWithoutEnd)) {
        write(name, names.back());
        return 0;
    }
    write(name, behind ? "" : names[static_cast<std::size_t>(index)]);
    return behind ? 1 : 0;
}

std::int32_t getType(char*, void* context, const char* key, std::uint32_t* type) {
    if (cameraOf(context) == nullptr) {
        return 1;
    }
    const std::string name(key);
    *type = endsWith(name, " switch") || name == "videoformat" ? HOST_PROPERTY_CHOICE
                                                               : HOST_PROPERTY_TEXT;
    if (is(Wrong::TypeOfThree) && name == "framerate") {
        *type = 3;
    }
    return 0;
}

std::int32_t getChoice(char* message, void* context, const char* key, std::int32_t index,
                       char* choice) {
    const CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    const std::string name(key);
    std::vector<std::string> list{"false", "true"};
    if (name == "videoformat") {
        list = {"Y800 (4x2)", "Y800 (8x4)"};
    } else if (!endsWith(name, " switch")) {
        const bool wrong = is(Wrong::NoBufferIsAFailure) && message == nullptr;
        return wrong ? 0 : refuse(message, "Feature " + name + " Not Found");
    }
    const auto place = static_cast<std::size_t>(index);
    if (place >= list.size() && !(is(Wrong::ChoicesWithoutEnd) && name == "videoformat")) {
        return 1;
    }
    write(choice, list[std::min(place, list.size() - 1)]);
    return 0;
}

std::int32_t getAttribute(char* message, void* context, const char*, std::uint32_t attribute,
                          char* text) {
    if (context == nullptr && is(Wrong::NullContextWritten)) {
        write(message, "no context");
    }
    if (cameraOf(context) == nullptr) {
        return 1;
    }
    if (is(Wrong::ThrowsOnAttribute) && attribute == 3) {
        throw std::runtime_error("no attribute");
    }
    if (attribute == 1) {
        write(text, "No comment.");
    } else if (attribute == 2 || attribute == 3 || is(Wrong::OtherAttributeWritten)) {
        write(text, "True");
    }
    return 0;
}

std::int32_t execute(char* message, void* context, const char* command) {
    if (cameraOf(context) == nullptr) {
        return 1;
    }
    return refuse(message, "Unknown command \"" + std::string(command) + "\"");
}

std::int32_t setParameters(char*, void* context, const CameraParameterBlock* block) {
    CheckedCamera* camera = cameraOf(context);
    if (camera == nullptr) {
        return 1;
    }
    const double exposure = std::clamp(block->exposure, 0.0001, 30.0);
    camera->settings["exposure auto switch"] = "false";
    camera->settings["exposure value abs"] = std::to_string(exposure);
    camera->settings["brightness value range"] =
        std::to_string(static_cast<int>(block->brightness * 255.0));
    camera->settings["trigger enable switch"] = block->triggerEnable == 1 ? "true" : "false";
    return 0;
}

// As a closed context must not be answered.
std::int32_t typeOfClosed(char* message, void* context, const char* key, std::uint32_t* type) {
    if (context != nullptr && static_cast<CheckedCamera*>(context)->closed) {
        *type = HOST_PROPERTY_TEXT;
        return 0;
    }
    return getType(message, context, key, type);
}

}  // namespace

CheckedSettings ordinarySettings() {
    return {
        {"brightness value range", "51"},
        {"brightness value range max", "255"},
        {"brightness value range min", "0"},
        {"exposure auto switch", "true"},
        {"exposure value abs", "0.033333"},
        {"exposure value abs max", "30.000000"},
        {"exposure value abs min", "0.000100"},
        {"framerate", "30.000000"},
        {"pixelformat", "Mono8"},
        {"trigger enable switch", "false"},
        {"trigger mode strings", "Edge"},
        {"videoformat", "Y800 (4x2)"},
        {"videoformat_0", "Y800 (4x2)"},
        {"videoformats", "Y800 (4x2),Y800 (8x4)"},
        {"videonorm", "PAL"},
    };
}

void fillSettingEntries(VideoChannelRecord& record) {
    record.SetCameraParameters = setParameters;
    record.ExecuteCommand = execute;
    record.GetPropertyValue = getValue;
    record.SetPropertyValue = setValue;
    record.GetPropertyName = getName;
    record.GetPropertyType = is(Wrong::ClosedContextAnswers) ? typeOfClosed : getType;
    record.GetPropertyChoice = getChoice;
    record.GetPropertyAttribute = is(Wrong::MissingEntry) ? nullptr : getAttribute;
}

}  // namespace camhost::test
