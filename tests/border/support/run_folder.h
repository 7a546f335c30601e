// SPDX-License-Identifier: MIT
// A fresh folder for one test, with those DLLs in it that the test wants there.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

class CRunFolder {
public:
    CRunFolder();
    CRunFolder(const CRunFolder&) = delete;
    CRunFolder& operator=(const CRunFolder&) = delete;
    // Unloads the DLLs of the folder and removes it: nothing of them may run by then.
    ~CRunFolder();

    void addAdapter() const;
    void addVirtualCameras() const;
    void addOtherLibrary() const;
    // The capture library's file name, and no library in it.
    void addDamagedLibrary(const std::wstring& name = L"ORV_CAPLB11_x64.dll") const;

    std::wstring adapterFile() const { return file(L"velmora_adapter.dll"); }
    std::wstring libraryFile() const { return file(L"ORV_CAPLB11_x64.dll"); }
    std::wstring file(const std::wstring& name) const { return (m_path / name).wstring(); }
    // With a backslash at the end.
    std::wstring pathWithBackslash() const { return m_path.wstring() + L'\\'; }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// Makes a folder current for a scope.
class CCurrentFolder {
public:
    explicit CCurrentFolder(const std::filesystem::path& folder)
        : m_before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    CCurrentFolder(const CCurrentFolder&) = delete;
    CCurrentFolder& operator=(const CCurrentFolder&) = delete;
    ~CCurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
    }

private:
    std::filesystem::path m_before;
};

// The folder of a module of this process, or of the program; with its backslash.
std::wstring folderOfModule(const wchar_t* module);
