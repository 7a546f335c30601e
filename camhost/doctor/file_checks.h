// SPDX-License-Identifier: MIT
// What the files of an installation tell, before any of them is loaded. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/library_search.h"
#include "camhost/doctor/diagnosis.h"
#include "camhost/doctor/dll_file.h"

namespace camhost {

// A library that another one wants, and the file that it gets.
struct Resolved {
    std::string library;
    std::string file;
};

class CFileChecks {
public:
    CFileChecks(CLibrarySearch& search, CDiagnoses& diagnoses)
        : m_search(search), m_diagnoses(diagnoses) {}

    // With the option's text. Whether it is a library for this machine.
    bool checkAdapter(const std::string& wanted);
    // The adapter's other lines, and those of its capture library.
    void checkContents();

    // Whether it can be an adapter at all.
    bool hasExport() const { return m_hasExport; }
    const std::vector<Resolved>& resolved() const { return m_resolved; }
    // Where the adapter takes its capture library from; empty when it delays none.
    const std::string& captureFile() const { return m_captureFile; }

private:
    std::optional<DllFile> readLibrary(const std::string& file, const char* check,
                                       const char* remedy);
    void tellMissingAdapter(const std::string& wanted);
    void checkExport();
    void checkImport(const char* check, const DllImport& import, const std::string& firstFolder);
    void checkCaptureLibrary(const DllImport& import);
    void checkNames(const DllImport& import, const DllFile& library);

    CLibrarySearch& m_search;
    CDiagnoses& m_diagnoses;
    std::string m_adapterFile;
    std::string m_captureFile;
    DllFile m_adapter;
    bool m_hasExport = false;
    std::vector<Resolved> m_resolved;
};

}  // namespace camhost
