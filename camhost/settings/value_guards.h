// SPDX-License-Identifier: MIT
// Checks of typed-in values before the adapter sees them, since it reads any
// text as some number or as "off". Portable.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "camhost/settings/key_kinds.h"

namespace camhost {

// The text to hand to the adapter, or nothing and the reason.
std::optional<std::string> guardedValue(SettingType type, std::string_view text,
                                        std::string& reason);

// Whether a value that was read back is the one that was asked for, as far as
// the six decimals of the adapter's number texts can tell.
bool sameValue(SettingType type, std::string_view asked, std::string_view read);

}  // namespace camhost
