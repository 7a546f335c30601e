// SPDX-License-Identifier: MIT
// The capture library's file beside the adapter.
#pragma once

#include "platform/windows.h"

// Loaded by its full path, so that a file of the same name beside the host's program, in
// the current directory or on the search path is never taken for it. Host thread.
class CLibraryFile {
public:
    CLibraryFile() = default;
    CLibraryFile(const CLibraryFile&) = delete;
    CLibraryFile& operator=(const CLibraryFile&) = delete;

    // Loads the file from the folder (with its last backslash; the empty text is no
    // folder), unless it is loaded already. Null where it is missing or damaged, or where
    // only a file of another name fits the pattern.
    HMODULE load(const wchar_t* folder);

    // Gives the file back, so that a better one can take its place.
    void unload() noexcept;

private:
    // One reference, kept to the end of the process.
    HMODULE m_module = nullptr;
};
