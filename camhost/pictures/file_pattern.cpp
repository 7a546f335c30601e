// SPDX-License-Identifier: MIT
#include "camhost/pictures/file_pattern.h"

#include <charconv>

namespace camhost {

std::optional<CFilePattern> CFilePattern::parse(std::string_view text, std::string& reason) {
    CFilePattern pattern;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string& part = pattern.m_numbered ? pattern.m_after : pattern.m_before;
        if (text[i] != '%') {
            part += text[i];
            continue;
        }
        if (i + 1 < text.size() && text[i + 1] == '%') {
            part += '%';
            ++i;
            continue;
        }
        const auto end = text.find_first_not_of("0123456789", i + 1);
        if (end == text.npos || text[end] != 'd') {
            reason = "only %d, %4d, %04d and %% may follow a percent sign";
            return std::nullopt;
        }
        if (pattern.m_numbered) {
            reason = "only one number may stand in it";
            return std::nullopt;
        }
        const std::string_view width = text.substr(i + 1, end - i - 1);
        std::from_chars(width.data(), width.data() + width.size(), pattern.m_width);
        if (width.size() > 3 || pattern.m_width > 18) {
            reason = "the number can have at most 18 digits";
            return std::nullopt;
        }
        pattern.m_fill = width.starts_with('0') ? '0' : ' ';
        pattern.m_numbered = true;
        i = end;
    }
    if (pattern.name(1).empty()) {
        reason = "it is empty";
        return std::nullopt;
    }
    return pattern;
}

std::string CFilePattern::name(std::uint64_t number) const {
    if (!m_numbered) {
        return m_before;
    }
    std::string digits = std::to_string(number);
    if (digits.size() < m_width) {
        digits.insert(0, m_width - digits.size(), m_fill);
    }
    return m_before + digits + m_after;
}

}  // namespace camhost
