// SPDX-License-Identifier: MIT
#include "camhost/base/texts.h"

#include <algorithm>

namespace camhost {

namespace {

char lowerCharacter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerCharacter);
    return result;
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
    return lowered(a) == lowered(b);
}

std::string normalisedKey(std::string_view key) {
    std::string result = lowered(key);
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    if (text.empty()) {
        return parts;
    }
    std::size_t begin = 0;
    for (std::size_t end = text.find(separator); end != text.npos;
         end = text.find(separator, begin)) {
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.emplace_back(text.substr(begin));
    return parts;
}

std::string join(const std::vector<std::string>& parts, std::string_view separator) {
    std::string result;
    for (const std::string& part : parts) {
        if (&part != &parts.front()) {
            result += separator;
        }
        result += part;
    }
    return result;
}

std::size_t displayWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text);
    const std::size_t used = displayWidth(text);
    if (used < width) {
        result.append(width - used, ' ');
    }
    return result;
}

std::string printable(std::string_view text) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(),
        [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return byte < 0x20U || byte == 0x7FU;
        },
        ' ');
    return result;
}

}  // namespace camhost
