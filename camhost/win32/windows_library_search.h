// SPDX-License-Identifier: MIT
// The loader's own answers. Used by windows_system.
#pragma once

#include <windows.h>

#include <string>

#include "camhost/base/library_search.h"

namespace camhost {

// Why a library could not be loaded.
std::string loadError(DWORD error);

class CWindowsLibrarySearch : public CLibrarySearch {
public:
    std::string adapterPath(const std::string& wanted) const override;
    FoundLibrary find(const std::string& name, const std::vector<std::string>& functions) override;
    std::string loadedFile(const std::string& name) const override;
    std::vector<SearchFolder> folders() const override;
};

}  // namespace camhost
