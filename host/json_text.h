// SPDX-License-Identifier: MIT
// JSON text from and into a value tree. The only file that knows the JSON
// library is json_text.cpp. Portable.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/data_value.h"

namespace camhost {

// Bytes that are not UTF-8 come out as the replacement character. With an
// indentation of 0 the text is one line.
std::string toJsonText(const CData& value, int indentation = 0);

// Nothing, and a reason with line and column, when the text is not JSON.
std::optional<CData> parseJsonText(std::string_view text, std::string& reason);

}  // namespace camhost
