// SPDX-License-Identifier: MIT
#include "camhost/settings/value_guards.h"

#include <algorithm>
#include <cmath>

#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"

namespace camhost {

std::optional<std::string> guardedValue(SettingType type, std::string_view text,
                                        std::string& reason) {
    switch (type) {
        case SettingType::Integer:
            if (!wholeInteger(text)) {
                const auto number = wholeNumber(text);
                const bool isLong = number && std::trunc(*number) == *number;
                reason = isLong ? "takes a whole number within -2147483648 and 2147483647"
                                : "takes a whole number";
                return std::nullopt;
            }
            return std::string(withoutPlus(text));
        case SettingType::Float:
            if (!wholeNumber(text)) {
                reason = "takes a number";
                return std::nullopt;
            }
            return std::string(withoutPlus(text));
        case SettingType::Boolean: {
            const std::optional<bool> value = booleanText(text);
            if (!value) {
                reason = "takes true or false (also on/off, yes/no, 1/0)";
                return std::nullopt;
            }
            return std::string(*value ? "true" : "false");
        }
        case SettingType::Choice:
        case SettingType::Text:
        case SettingType::Command:
            break;
    }
    return std::string(text);
}

bool sameValue(SettingType type, std::string_view asked, std::string_view read) {
    if (type == SettingType::Integer || type == SettingType::Float) {
        const std::optional<double> a = wholeNumber(asked);
        const std::optional<double> b = wholeNumber(read);
        return a && b && std::fabs(*a - *b) <= std::max(6e-7, std::fabs(*a) * 1e-9);
    }
    if (type == SettingType::Boolean) {
        return sameIgnoringCase(asked, read);
    }
    return asked == read;
}

}  // namespace camhost
