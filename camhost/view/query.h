// SPDX-License-Identifier: MIT
// The part of a target behind its question mark. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace camhost {

// Names and values as they stand: none that the view knows needs an escape.
class CQuery {
public:
    explicit CQuery(std::string_view text) : m_text(text) {}

    std::optional<std::string_view> find(std::string_view name) const;
    // Nothing when it is absent. Throws a usage Failure for what is no whole number
    // from 0 up to 2^53, which every reader of JSON can hold.
    std::optional<std::uint64_t> number(std::string_view name) const;
    // Throws a usage Failure for what is no number within 0 and `most`.
    double seconds(std::string_view name, double absent, double most) const;

private:
    std::string_view m_text;
};

}  // namespace camhost
