// SPDX-License-Identifier: MIT
// The machine that camhost runs on, by Windows calls. Used by main only.
#pragma once

#include <windows.h>

#include <memory>

#include "camhost/base/system.h"
#include "camhost/win32/dialog_guard.h"
#include "camhost/win32/windows_library_search.h"

namespace camhost {

class CWindowsSystem : public CSystem {
public:
    CWindowsSystem();
    ~CWindowsSystem() override;

    void setVariable(const std::string& name, const std::string& value) override;
    GetVideoChannelEntry loadAdapter(const std::string& file) override;
    std::string adapterFile() const override { return m_adapterFile; }
    bool captureLibraryPresent() const override;
    CLibrarySearch& librarySearch() override { return m_librarySearch; }
    std::string rigMistake() const override;
    void guardDialogs(bool on) override;
    std::vector<Dialog> dialogsClosed() override;
    std::optional<ProcessResources> resources() override;
    std::optional<double> processorSeconds() override;
    double seconds() override;
    void sleep(std::uint32_t milliseconds) override;
    bool interrupted() override;
    bool messagesOnTerminal() override;
    std::string utcDate() override;
    std::vector<std::uint8_t> randomBytes(std::size_t count) override;
    bool openBrowser(const std::string& address) override;

private:
    CWindowsLibrarySearch m_librarySearch;
    std::string m_adapterFile;
    std::unique_ptr<CDialogGuard> m_guard;
    std::vector<Dialog> m_dialogs;  // of guards that have ended
};

}  // namespace camhost
