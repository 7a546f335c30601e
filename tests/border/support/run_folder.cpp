// SPDX-License-Identifier: MIT
#include "tests/border/support/run_folder.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <fstream>

#include "platform/windows.h"

namespace fs = std::filesystem;

namespace {

std::atomic<int> foldersMade{0};

// A DLL under test: this build's own, or its namesake below the folder that the
// environment names, laid out as the folder of programs of this build.
fs::path underTest(const char* name) {
    const char* folder = std::getenv("VELMORA_DLLS_UNDER_TEST");
    return fs::path(folder != nullptr ? folder : VELMORA_DLL_FOLDER) / name;
}

// The adapter's delayed import keeps the capture library loaded, and a loaded file
// can not be removed.
void unloadFrom(const std::wstring& file) {
    constexpr int mostReferences = 10;
    for (int i = 0; i < mostReferences; ++i) {
        const HMODULE module = ::GetModuleHandleW(file.c_str());
        if (module == nullptr) {
            return;
        }
        ::FreeLibrary(module);
    }
}

}  // namespace

CRunFolder::CRunFolder()
    : m_path(fs::canonical(fs::temp_directory_path()) /
             ("adapter border " + std::to_string(::GetCurrentProcessId()) + "-" +
              std::to_string(++foldersMade))) {
    fs::remove_all(m_path);
    fs::create_directories(m_path);
}

CRunFolder::~CRunFolder() {
    unloadFrom(libraryFile());
    unloadFrom(adapterFile());
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

void CRunFolder::addAdapter() const {
    fs::copy_file(underTest("velmora_adapter.dll"), adapterFile());
}

void CRunFolder::addVirtualCameras() const {
    fs::copy_file(underTest("ORV_CAPLB11_x64.dll"), libraryFile(),
                  fs::copy_options::overwrite_existing);
}

void CRunFolder::addOtherLibrary() const {
    fs::copy_file(underTest("border/other_library/ORV_CAPLB11_x64.dll"), libraryFile());
}

void CRunFolder::addDamagedLibrary(const std::wstring& name) const {
    std::ofstream(m_path / name, std::ios::binary) << "MZ, and then nothing of use";
}

std::wstring folderOfModule(const wchar_t* module) {
    std::array<wchar_t, 1024> path{};
    ::GetModuleFileNameW(module == nullptr ? nullptr : ::GetModuleHandleW(module), path.data(),
                         static_cast<DWORD>(path.size()));
    return fs::path(path.data()).parent_path().wstring() + L'\\';
}
