// SPDX-License-Identifier: MIT
// The JSON object in the body of a request. Everything here throws a usage Failure that
// names what is missing or of another type. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "camhost/base/json.h"

namespace camhost {

class CJsonBody {
public:
    explicit CJsonBody(const std::string& text);

    std::string text(const char* name) const;
    std::string text(const char* name, const char* absent) const;
    bool flag(const char* name) const;
    bool flag(const char* name, bool absent) const;
    // Within 0 and `most`.
    std::int32_t number(const char* name, std::int32_t most) const;
    std::optional<std::int32_t> optionalNumber(const char* name, std::int32_t most) const;

private:
    std::optional<CJson> find(const char* name) const { return m_json.find(name); }

    CJson m_json;
};

}  // namespace camhost
