// SPDX-License-Identifier: MIT
#include "camhost/view/query.h"

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

constexpr std::uint64_t largestNumber = std::uint64_t{1} << 53U;

Failure outOfRange(std::string_view name, const std::string& range) {
    return {
        .exit = ExitCode::Usage, .code = "usage", .message = std::string(name) + " takes " + range};
}

}  // namespace

std::optional<std::string_view> CQuery::find(std::string_view name) const {
    std::string_view rest = m_text;
    while (!rest.empty()) {
        const std::size_t end = rest.find('&');
        const std::string_view pair = rest.substr(0, end);
        rest = end == rest.npos ? std::string_view{} : rest.substr(end + 1);
        const std::size_t equals = pair.find('=');
        if (pair.substr(0, equals) == name) {
            return equals == pair.npos ? std::string_view{} : pair.substr(equals + 1);
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> CQuery::number(std::string_view name) const {
    const auto text = find(name);
    if (!text) {
        return std::nullopt;
    }
    const auto value = wholeCount(*text);
    if (!value || *value > largestNumber) {
        throw outOfRange(name, "a whole number within 0 and " + std::to_string(largestNumber));
    }
    return value;
}

double CQuery::seconds(std::string_view name, double absent, double most) const {
    const auto text = find(name);
    if (!text) {
        return absent;
    }
    const auto value = wholeNumber(*text);
    if (!value || !(*value >= 0.0 && *value <= most)) {
        throw outOfRange(name, "a number within 0 and " + fixedText(most, 0));
    }
    return *value;
}

}  // namespace camhost
