// SPDX-License-Identifier: MIT
// Small operations on text: lowering, splitting, joining, and text for a terminal.
// Used all over camhost. Portable.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace camhost {

// ASCII only, whatever the locale.
std::string lowered(std::string_view text);
std::string upperCased(std::string_view text);
// Of UTF-8, for finding what people typed: capital letters of the Latin, Greek and Cyrillic
// alphabets are small ones.
std::string folded(std::string_view text);
bool sameIgnoringCase(std::string_view a, std::string_view b);

// As the adapter reads a key: lowered, without the blanks at its end.
std::string normalisedKey(std::string_view key);

// The parts between the separators; none for the empty text.
std::vector<std::string> split(std::string_view text, char separator);
std::string join(const std::vector<std::string>& parts, std::string_view separator);

std::string padded(std::string_view text, std::size_t width);

// UTF-8 code points, for aligning columns.
std::size_t displayWidth(std::string_view text);

// Foreign text on one line: every control character is a blank.
std::string printable(std::string_view text);

// Text as it may go to a terminal: line breaks and tabs stay, every other control character
// (ASCII's, and U+0080 to U+009F) is a blank, and a byte that is no UTF-8 is U+FFFD.
std::string forTerminal(std::string_view text);

}  // namespace camhost
