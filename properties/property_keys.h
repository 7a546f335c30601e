// SPDX-License-Identifier: MIT
// Pure: how the keys of settings and commands are made and matched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Kinds of a device property, as the end of its key shows them.
inline constexpr std::string_view rangeSuffix = " range";
inline constexpr std::string_view switchSuffix = " switch";
inline constexpr std::string_view stringsSuffix = " strings";
inline constexpr std::string_view absoluteSuffix = " abs";
// Companions of every range and absolute value.
inline constexpr std::string_view minimumSuffix = " min";
inline constexpr std::string_view maximumSuffix = " max";

// Numbered keys; the number follows.
inline constexpr std::string_view videoFormatPrefix = "videoformat_";
inline constexpr std::string_view featurePrefix = "feature_";
inline constexpr std::string_view executePrefix = "execute_";

// Keys with a meaning of their own inside the adapter.
inline constexpr std::string_view contrastKey = "contrast value range";
inline constexpr std::string_view brightnessKey = "brightness value range";
inline constexpr std::string_view exposureKey = "exposure value abs";
inline constexpr std::string_view exposureValueSwitchKey = "exposure value switch";
inline constexpr std::string_view exposureAutoKey = "exposure auto switch";
inline constexpr std::string_view triggerEnableKey = "trigger enable switch";
inline constexpr std::string_view triggerPolarityKey = "trigger polarity switch";
inline constexpr std::string_view videoFormatKey = "videoformat";

// ASCII alone is lowered, whatever the host's locale.
constexpr char lowered(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}
std::string lowered(std::string_view text);

// The longest key that is made: a unique one with the longest ending of a companion.
inline constexpr std::size_t longestUniqueKey = 254;
inline constexpr std::size_t longestKey = longestUniqueKey + maximumSuffix.size();

// A host's key as the tables know it. Allocates nothing; of a key that is longer than any
// in a table just so much is kept that it matches none.
class CHostKey {
public:
    explicit CHostKey(std::string_view key) noexcept;

    operator std::string_view() const noexcept {  // NOLINT(google-explicit-constructor)
        return {m_text.data(), m_size};
    }
    friend bool operator==(const CHostKey& left, std::string_view right) noexcept {
        return std::string_view(left) == right;
    }

private:
    std::array<char, longestKey + 1> m_text;
    std::size_t m_size;
};

// Lowered, blanks at its end removed.
inline CHostKey normalisedKey(std::string_view key) noexcept {
    return CHostKey(key);
}

// Item and element name, lowered, with one blank between.
std::string baseKey(std::string_view itemName, std::string_view elementName);

// The first of key, key1, key2, ... that is not taken, cut to 254 characters in
// such a way that the number stands.
std::string uniqueKey(std::string_view key, const std::function<bool(std::string_view)>& isTaken);

std::string numberedKey(std::string_view prefix, std::int32_t number);

// Whether the host's list of settings shows the key.
bool isListedKey(std::string_view key) noexcept;
// Whether the key names a switch, wherever the suffix stands.
bool isSwitchKey(std::string_view key) noexcept;
