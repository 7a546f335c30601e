// SPDX-License-Identifier: MIT
// Identifiers of items, elements and interfaces: their text form, and made-up
// ones that are the same in every run.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace virtual_cameras {

inline constexpr GUID noIdentifier = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

// "{284C0E07-010B-45BF-8291-09D90A459B28}"
std::string identifierText(const GUID& identifier);
// Upper or lower case digits. Nothing when the text is not an identifier.
std::optional<GUID> parseIdentifier(std::string_view text);
// Made from the name alone.
GUID madeUpIdentifier(std::string_view name);

}  // namespace virtual_cameras
