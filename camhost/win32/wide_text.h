// SPDX-License-Identifier: MIT
// UTF-8 from and into the wide texts of Windows calls. Used by win32/ only.
#pragma once

#include <string>

namespace camhost {

std::wstring toWide(const std::string& text);
std::string toUtf8(const std::wstring& text);

}  // namespace camhost
