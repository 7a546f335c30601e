// SPDX-License-Identifier: MIT
#include "camhost/base/texts.h"

#include <algorithm>
#include <utility>

namespace camhost {

namespace {

char lowerCharacter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char upperCharacter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerCharacter);
    return result;
}

std::string upperCased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upperCharacter);
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

namespace {

bool isControl(char32_t point) {
    return point < 0x20 || (point >= 0x7F && point < 0xA0);
}

// The length of the UTF-8 sequence that the text begins with, and its code point; 1 and
// U+FFFD where it begins with none.
std::pair<std::size_t, char32_t> firstPoint(std::string_view text) {
    constexpr char32_t none = 0xFFFD;
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        return {1, lead};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return {1, none};
    }
    char32_t point = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80) {
            return {1, none};
        }
        point = (point << 6U) | (byte & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
    return point < smallest[length] || isSurrogate || point > 0x10FFFF
               ? std::pair<std::size_t, char32_t>{1, none}
               : std::pair{length, point};
}

std::string withoutControls(std::string_view text, bool keepLayout) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [length, point] = firstPoint(text);
        if (isControl(point) && !(keepLayout && (point == '\n' || point == '\t'))) {
            result += ' ';
        } else if (point == 0xFFFD) {
            result += "\xEF\xBF\xBD";
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace

namespace {

struct CapitalLetters {
    char32_t first;
    char32_t last;
    char32_t toSmall;  // what to add
};
constexpr CapitalLetters capitalLetters[] = {
    {0x00C0, 0x00D6, 0x20},                          // Latin, but for the sign of multiplication
    {0x00D8, 0x00DE, 0x20}, {0x0391, 0x03AB, 0x20},  // Greek
    {0x0400, 0x040F, 0x50},                          // Cyrillic
    {0x0410, 0x042F, 0x20},
};

// Latin letters with further signs come in pairs, capital first.
char32_t smallOfPair(char32_t point) {
    const bool evenFirst =
        (point >= 0x0100 && point <= 0x0137) || (point >= 0x014A && point <= 0x0177);
    const bool oddFirst =
        (point >= 0x0139 && point <= 0x0148) || (point >= 0x0179 && point <= 0x017E);
    const bool isCapital = (evenFirst && point % 2 == 0) || (oddFirst && point % 2 == 1);
    return isCapital ? point + 1 : point;
}

char32_t smallLetter(char32_t point) {
    for (const CapitalLetters& letters : capitalLetters) {
        if (point >= letters.first && point <= letters.last) {
            return point + letters.toSmall;
        }
    }
    return smallOfPair(point);
}

}  // namespace

std::string folded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [length, point] = firstPoint(text);
        if (const char32_t small = smallLetter(point); length == 2 && small != point) {
            result += static_cast<char>(0xC0U | (small >> 6U));
            result += static_cast<char>(0x80U | (small & 0x3FU));
        } else {
            result += length == 1 ? std::string(1, lowerCharacter(text.front()))
                                  : std::string(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    return result;
}

std::string printable(std::string_view text) {
    return withoutControls(text, false);
}

std::string forTerminal(std::string_view text) {
    return withoutControls(text, true);
}

}  // namespace camhost
