// SPDX-License-Identifier: MIT
// Finding names: by a pattern, and those that a mistyped one is near to. Portable.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace camhost {

// Insertions, deletions, changes and swaps of neighbours that turn a into b.
std::size_t editDistance(std::string_view a, std::string_view b);

// At most three names that are likely meant, the nearest first.
std::vector<std::string> nearNames(std::string_view asked, const std::vector<std::string>& names);

// ` "a", "b" or "c"` style; empty for none.
std::string quotedList(const std::vector<std::string>& names);

// Case-blind: with * and ? the whole text must match, else a part is enough.
bool matchesPattern(std::string_view text, std::string_view pattern);

}  // namespace camhost
