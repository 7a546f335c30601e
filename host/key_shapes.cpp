// SPDX-License-Identifier: MIT
#include "host/key_shapes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace camhost {

namespace {

constexpr std::array<std::pair<std::string_view, KeyShape>, 8> fixedKeys{{
    {"framerate", KeyShape::FrameRate},
    {"videoformat", KeyShape::VideoFormat},
    {"videonorm", KeyShape::VideoNorm},
    {"inputchannel", KeyShape::InputChannel},
    {"pixelformat", KeyShape::PixelFormat},
    {"videoformats", KeyShape::NameList},
    {"videonorms", KeyShape::NameList},
    {"inputchannels", KeyShape::NameList},
}};

constexpr std::array<std::pair<std::string_view, KeyShape>, 4> suffixes{{
    {" range", KeyShape::Range},
    {" abs", KeyShape::Absolute},
    {" switch", KeyShape::Switch},
    {" strings", KeyShape::Strings},
}};

constexpr std::array<std::string_view, 6> hiddenTexts{"binning", " min",    " max",
                                                      "feature", "execute", "_"};

std::string_view withoutNumber(std::string_view text) {
    const auto last = text.find_last_not_of("0123456789");
    return last == text.npos ? std::string_view{} : text.substr(0, last + 1);
}

// "x range" and, where two had the same name, "x range1".
KeyShape suffixShape(std::string_view key) {
    const std::string_view bare = withoutNumber(key);
    for (const auto& [suffix, shape] : suffixes) {
        if (bare.ends_with(suffix)) {
            return shape;
        }
    }
    return KeyShape::Other;
}

bool isNumbered(std::string_view key, std::string_view prefix) {
    return key.size() > prefix.size() && key.starts_with(prefix) &&
           key.find_first_not_of("0123456789", prefix.size()) == key.npos;
}

bool isLimit(std::string_view key) {
    if (!key.ends_with(" min") && !key.ends_with(" max")) {
        return false;
    }
    const KeyShape owner = suffixShape(key.substr(0, key.size() - 4));
    return owner == KeyShape::Range || owner == KeyShape::Absolute;
}

// The part before " auto switch", empty when there is none.
std::string_view autoSwitchOwner(std::string_view key) {
    constexpr std::string_view suffix = " auto switch";
    const std::string_view bare = withoutNumber(key);
    return bare.ends_with(suffix) ? bare.substr(0, bare.size() - suffix.size())
                                  : std::string_view{};
}

}  // namespace

KeyShape keyShape(std::string_view key) {
    for (const auto& [fixed, shape] : fixedKeys) {
        if (key == fixed) {
            return shape;
        }
    }
    if (isNumbered(key, "videoformat_")) {
        return KeyShape::FormatAt;
    }
    if (isNumbered(key, "feature_") || isNumbered(key, "execute_")) {
        return KeyShape::ListEntry;
    }
    return isLimit(key) ? KeyShape::Limit : suffixShape(key);
}

KeyLevel keyLevel(std::string_view key) {
    if (keyShape(key) == KeyShape::ListEntry) {
        return KeyLevel::Internal;
    }
    const bool hidden = std::any_of(hiddenTexts.begin(), hiddenTexts.end(),
                                    [&](auto text) { return key.find(text) != key.npos; });
    return hidden ? KeyLevel::Expert : KeyLevel::Basic;
}

SettingType typeOfShape(KeyShape shape) {
    switch (shape) {
        case KeyShape::Range:
            return SettingType::Integer;
        case KeyShape::Absolute:
        case KeyShape::FrameRate:
            return SettingType::Float;
        case KeyShape::Switch:
            return SettingType::Boolean;
        case KeyShape::Strings:
        case KeyShape::VideoFormat:
        case KeyShape::VideoNorm:
        case KeyShape::InputChannel:
        case KeyShape::PixelFormat:
            return SettingType::Choice;
        case KeyShape::Limit:
        case KeyShape::NameList:
        case KeyShape::FormatAt:
        case KeyShape::ListEntry:
        case KeyShape::Other:
            break;
    }
    return SettingType::Text;
}

std::string_view typeName(SettingType type) {
    constexpr std::array<std::string_view, 6> names{"int",    "float", "bool",
                                                    "choice", "text",  "command"};
    return names[static_cast<std::size_t>(type)];
}

std::string_view levelName(KeyLevel level) {
    constexpr std::array<std::string_view, 3> names{"basic", "expert", "internal"};
    return names[static_cast<std::size_t>(level)];
}

bool hasLimits(KeyShape shape) {
    return shape == KeyShape::Range || shape == KeyShape::Absolute;
}

bool isReadOnly(KeyShape shape) {
    return shape == KeyShape::Limit || shape == KeyShape::NameList || shape == KeyShape::FormatAt ||
           shape == KeyShape::ListEntry;
}

bool isPlainSetting(KeyShape shape) {
    return shape != KeyShape::Limit && shape != KeyShape::FormatAt && shape != KeyShape::ListEntry;
}

bool isAutoSwitch(std::string_view key) {
    return !autoSwitchOwner(key).empty();
}

std::optional<std::string> autoSwitchFor(std::string_view key,
                                         const std::vector<std::string>& keys) {
    std::optional<std::string> best;
    std::size_t longest = 0;
    for (const std::string& candidate : keys) {
        const std::string_view owner = autoSwitchOwner(candidate);
        if (candidate != key && owner.size() > longest && key.starts_with(owner) &&
            key.size() > owner.size() && key[owner.size()] == ' ') {
            best = candidate;
            longest = owner.size();
        }
    }
    return best;
}

std::optional<int> loadStage(std::string_view key) {
    switch (keyShape(key)) {
        case KeyShape::VideoNorm:
            return 0;
        case KeyShape::InputChannel:
            return 1;
        case KeyShape::VideoFormat:
            return 2;
        case KeyShape::PixelFormat:
            return 3;
        case KeyShape::FrameRate:
            return 4;
        case KeyShape::Strings:
            return 5;
        case KeyShape::Range:
            return 6;
        case KeyShape::Absolute:
            return 7;
        case KeyShape::Switch:
            return isAutoSwitch(key) ? 9 : 8;
        case KeyShape::Limit:
        case KeyShape::NameList:
        case KeyShape::FormatAt:
        case KeyShape::ListEntry:
        case KeyShape::Other:
            break;
    }
    return std::nullopt;
}

}  // namespace camhost
