// SPDX-License-Identifier: MIT
#include "tests/border/support/run_folder.h"

#include <array>
#include <atomic>
#include <fstream>

#include "platform/windows.h"

namespace fs = std::filesystem;

namespace {

std::atomic<int> foldersMade{0};

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
    fs::copy_file(VELMORA_ADAPTER_FILE, adapterFile());
}

void CRunFolder::addVirtualCameras() const {
    fs::copy_file(VELMORA_CAPTURE_LIBRARY_FILE, libraryFile(),
                  fs::copy_options::overwrite_existing);
}

void CRunFolder::addOtherLibrary() const {
    fs::copy_file(VELMORA_OTHER_LIBRARY_FILE, libraryFile());
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
