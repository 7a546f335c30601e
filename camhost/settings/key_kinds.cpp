// SPDX-License-Identifier: MIT
#include "camhost/settings/key_kinds.h"

#include <algorithm>
#include <array>
#include <utility>

namespace camhost {

namespace {

constexpr std::array<std::pair<std::string_view, KeyKind>, 8> fixedKeys{{
    {"framerate", KeyKind::FrameRate},
    {"videoformat", KeyKind::VideoFormat},
    {"videonorm", KeyKind::VideoNorm},
    {"inputchannel", KeyKind::InputChannel},
    {"pixelformat", KeyKind::PixelFormat},
    {"videoformats", KeyKind::NameList},
    {"videonorms", KeyKind::NameList},
    {"inputchannels", KeyKind::NameList},
}};

constexpr std::array<std::pair<std::string_view, KeyKind>, 4> suffixes{{
    {" range", KeyKind::Range},
    {" abs", KeyKind::Absolute},
    {" switch", KeyKind::Switch},
    {" strings", KeyKind::Strings},
}};

// Elements of two words; any other is the one word behind its item.
constexpr std::array<std::string_view, 7> longElements{
    " one push",       " x offset",       " y offset",      " software trigger",
    " auto reference", " auto max value", " auto min value"};

constexpr std::array<std::string_view, 6> hiddenTexts{"binning", " min",    " max",
                                                      "feature", "execute", "_"};

std::string_view withoutNumber(std::string_view text) {
    const auto last = text.find_last_not_of("0123456789");
    return last == text.npos ? std::string_view{} : text.substr(0, last + 1);
}

// "x range" and, where two had the same name, "x range1".
KeyKind suffixKind(std::string_view key) {
    const std::string_view bare = withoutNumber(key);
    for (const auto& [suffix, kind] : suffixes) {
        if (bare.ends_with(suffix)) {
            return kind;
        }
    }
    return KeyKind::Other;
}

bool isNumbered(std::string_view key, std::string_view prefix) {
    return key.size() > prefix.size() && key.starts_with(prefix) &&
           key.find_first_not_of("0123456789", prefix.size()) == key.npos;
}

bool isLimit(std::string_view key) {
    if (!key.ends_with(" min") && !key.ends_with(" max")) {
        return false;
    }
    const KeyKind owner = suffixKind(key.substr(0, key.size() - 4));
    return owner == KeyKind::Range || owner == KeyKind::Absolute;
}

// The part before " auto switch", empty when there is none.
std::string_view autoSwitchOwner(std::string_view key) {
    constexpr std::string_view suffix = " auto switch";
    const std::string_view bare = withoutNumber(key);
    return bare.ends_with(suffix) ? bare.substr(0, bare.size() - suffix.size())
                                  : std::string_view{};
}

}  // namespace

KeyKind keyKind(std::string_view key) {
    for (const auto& [fixed, kind] : fixedKeys) {
        if (key == fixed) {
            return kind;
        }
    }
    if (isNumbered(key, "videoformat_")) {
        return KeyKind::FormatAt;
    }
    if (isNumbered(key, "feature_") || isNumbered(key, "execute_")) {
        return KeyKind::ListEntry;
    }
    return isLimit(key) ? KeyKind::Limit : suffixKind(key);
}

KeyLevel keyLevel(std::string_view key) {
    if (keyKind(key) == KeyKind::ListEntry) {
        return KeyLevel::Internal;
    }
    const bool hidden = std::any_of(hiddenTexts.begin(), hiddenTexts.end(),
                                    [&](auto text) { return key.find(text) != key.npos; });
    return hidden ? KeyLevel::Expert : KeyLevel::Basic;
}

SettingType typeOfKind(KeyKind kind) {
    switch (kind) {
        case KeyKind::Range:
            return SettingType::Integer;
        case KeyKind::Absolute:
        case KeyKind::FrameRate:
            return SettingType::Float;
        case KeyKind::Switch:
            return SettingType::Boolean;
        case KeyKind::Strings:
        case KeyKind::VideoFormat:
        case KeyKind::VideoNorm:
        case KeyKind::InputChannel:
        case KeyKind::PixelFormat:
            return SettingType::Choice;
        case KeyKind::Limit:
        case KeyKind::NameList:
        case KeyKind::FormatAt:
        case KeyKind::ListEntry:
        case KeyKind::Other:
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

bool hasLimits(KeyKind kind) {
    return kind == KeyKind::Range || kind == KeyKind::Absolute;
}

bool isReadOnly(KeyKind kind) {
    return kind == KeyKind::Limit || kind == KeyKind::NameList || kind == KeyKind::FormatAt ||
           kind == KeyKind::ListEntry;
}

bool isPlainSetting(KeyKind kind) {
    return kind != KeyKind::Limit && kind != KeyKind::FormatAt && kind != KeyKind::ListEntry;
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

std::string_view itemOfKey(std::string_view key) {
    std::string_view bare = key;
    if (isLimit(bare)) {
        bare.remove_suffix(4);
    }
    const KeyKind kind = keyKind(bare);
    if (isReadOnly(kind) || bare.find(' ') == bare.npos) {
        return {};
    }
    if (suffixKind(bare) != KeyKind::Other) {
        bare = bare.substr(0, bare.rfind(' '));
    }
    for (const std::string_view element : longElements) {
        if (bare.ends_with(element)) {
            return bare.substr(0, bare.size() - element.size());
        }
    }
    const auto last = bare.rfind(' ');
    return last == bare.npos ? bare : bare.substr(0, last);
}

std::optional<int> loadStage(std::string_view key) {
    switch (keyKind(key)) {
        case KeyKind::VideoNorm:
            return 0;
        case KeyKind::InputChannel:
            return 1;
        case KeyKind::VideoFormat:
            return 2;
        case KeyKind::PixelFormat:
            return 3;
        case KeyKind::FrameRate:
            return 4;
        case KeyKind::Strings:
            return 5;
        case KeyKind::Range:
            return 6;
        case KeyKind::Absolute:
            return 7;
        case KeyKind::Switch:
            return isAutoSwitch(key) ? 9 : 8;
        case KeyKind::Limit:
        case KeyKind::NameList:
        case KeyKind::FormatAt:
        case KeyKind::ListEntry:
        case KeyKind::Other:
            break;
    }
    return std::nullopt;
}

}  // namespace camhost
