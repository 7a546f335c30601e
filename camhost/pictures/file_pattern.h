// SPDX-License-Identifier: MIT
// The names of picture files, such as shot_%04d.png: read and filled in here,
// never handed to a formatting function. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace camhost {

class CFilePattern {
public:
    // One of %d, %3d or %03d (up to 18 digits), and %% for a percent sign.
    // Nothing, and the reason, for anything else.
    static std::optional<CFilePattern> parse(std::string_view text, std::string& reason);

    bool isNumbered() const { return m_numbered; }
    std::string name(std::uint64_t number) const;

private:
    std::string m_before;
    std::string m_after;
    std::size_t m_width = 0;
    char m_fill = ' ';
    bool m_numbered = false;
};

}  // namespace camhost
