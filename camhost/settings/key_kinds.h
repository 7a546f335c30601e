// SPDX-License-Identifier: MIT
// What the text of a key tells about a setting: its kind, its companions, how
// deep it is hidden, and where it stands in the order of loading. Portable.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace camhost {

enum class KeyKind {
    Range,      // "... range": a whole number
    Absolute,   // "... abs": a number
    Switch,     // "... switch": true or false
    Strings,    // "... strings": one of several texts
    Limit,      // "... min" and "... max" beside a range or absolute value
    FrameRate,  // the fixed keys
    VideoFormat,
    VideoNorm,
    InputChannel,
    PixelFormat,
    NameList,   // "videoformats", "videonorms", "inputchannels"
    FormatAt,   // "videoformat_N"
    ListEntry,  // "feature_N", "execute_N"
    Other
};

enum class SettingType { Integer, Float, Boolean, Choice, Text, Command };

// Basic: in the host's own name list. Expert: hidden from it. Internal: the
// numbered list entries.
enum class KeyLevel { Basic, Expert, Internal };

// All take keys in lower case.
KeyKind keyKind(std::string_view key);
KeyLevel keyLevel(std::string_view key);
SettingType typeOfKind(KeyKind kind);
std::string_view typeName(SettingType type);
std::string_view levelName(KeyLevel level);

// Whether a "... min" and a "... max" key can stand beside this one.
bool hasLimits(KeyKind kind);
bool isReadOnly(KeyKind kind);
// Lines of their own in the normal table; the rest is shown when all is asked for.
bool isPlainSetting(KeyKind kind);

bool isAutoSwitch(std::string_view key);
// The automatic that guards a value or an action: of the keys that end in
// " auto switch", the one with the longest beginning in common as whole words.
std::optional<std::string> autoSwitchFor(std::string_view key,
                                         const std::vector<std::string>& keys);

// What a setting or action belongs to, such as "exposure" of "exposure value abs"; empty
// for the fixed keys, the lists, and what is a single word.
std::string_view itemOfKey(std::string_view key);

// Place in the order of loading: norm, channel, format, pixel format, frame
// rate, values, switches. Nothing for what can't be set.
std::optional<int> loadStage(std::string_view key);

}  // namespace camhost
