// SPDX-License-Identifier: MIT
// How the machine finds libraries.
#pragma once

#include <string>
#include <vector>

namespace camhost {

// Paths are UTF-8, as everywhere.
struct FoundLibrary {
    std::string file{};                  // its full path; empty when it can not be had
    std::string reason{};                // why not
    std::vector<std::string> missing{};  // of the functions that were asked for
};

struct SearchFolder {
    std::string path;  // ends with its separator
    std::string what;  // "beside camhost", "in the current folder"
    bool isSystem = false;
};

class CLibrarySearch {
public:
    CLibrarySearch() = default;
    CLibrarySearch(const CLibrarySearch&) = delete;
    CLibrarySearch& operator=(const CLibrarySearch&) = delete;
    virtual ~CLibrarySearch() = default;

    // The full path of what CSystem::loadAdapter() would load; it need not be there.
    virtual std::string adapterPath(const std::string& wanted) const = 0;
    // The library that this process gets by a name without folder; it may be loaded for that.
    virtual FoundLibrary find(const std::string& name,
                              const std::vector<std::string>& functions) = 0;
    // The file of the one that is loaded already under that name; empty for none.
    virtual std::string loadedFile(const std::string& name) const = 0;
    // Those in which a name without folder is looked for, in that order.
    virtual std::vector<SearchFolder> folders() const = 0;
};

}  // namespace camhost
