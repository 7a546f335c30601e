// SPDX-License-Identifier: MIT
#include "properties/property_keys.h"

#include <algorithm>

namespace {

constexpr std::array<std::string_view, 6> hiddenParts = {"binning", minimumSuffix, maximumSuffix,
                                                         "feature", "execute",     "_"};

bool contains(std::string_view text, std::string_view part) noexcept {
    return text.find(part) != std::string_view::npos;
}

}  // namespace

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char character) { return lowered(character); });
    return result;
}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what counts of the text is written.
CHostKey::CHostKey(std::string_view key) noexcept
    // Without any character but blanks this is npos + 1, which is 0.
    : m_size(std::min(key.find_last_not_of(' ') + 1, m_text.size())) {
    std::transform(key.begin(), key.begin() + static_cast<std::ptrdiff_t>(m_size), m_text.begin(),
                   [](char character) { return lowered(character); });
}

std::string baseKey(std::string_view itemName, std::string_view elementName) {
    std::string key(itemName);
    key += ' ';
    key += elementName;
    return lowered(key);
}

std::string uniqueKey(std::string_view key, const std::function<bool(std::string_view)>& isTaken) {
    std::string candidate(key.substr(0, longestUniqueKey));
    for (std::int32_t n = 1; isTaken(candidate); ++n) {
        const std::string number = std::to_string(n);
        candidate = key.substr(0, longestUniqueKey - number.size());
        candidate += number;
    }
    return candidate;
}

std::string numberedKey(std::string_view prefix, std::int32_t number) {
    std::string key(prefix);
    key += std::to_string(number);
    return key;
}

bool isListedKey(std::string_view key) noexcept {
    return std::none_of(hiddenParts.begin(), hiddenParts.end(),
                        [key](std::string_view part) { return contains(key, part); });
}

bool isSwitchKey(std::string_view key) noexcept {
    return contains(key, switchSuffix);
}
