// SPDX-License-Identifier: MIT
// Whether an installation is right: its files, and what comes of loading them. Portable.
#pragma once

#include <string>

#include "camhost/base/system.h"
#include "camhost/camera/cameras.h"
#include "camhost/doctor/diagnosis.h"
#include "camhost/doctor/file_checks.h"

namespace camhost {

class CDoctor {
public:
    // With the option that names the adapter; message boxes are left to the user or not.
    CDoctor(CSystem& system, std::string wantedAdapter, bool dialogs, CDiagnoses::Watcher watcher);

    void run();
    const CDiagnoses& diagnoses() const { return m_diagnoses; }

private:
    void load();
    void checkCameras(const CCameras& cameras);
    bool checkDialogs();
    void checkSearchOrder();
    void checkHidden(const Resolved& resolved);
    std::string otherCopies() const;

    CSystem& m_system;
    std::string m_wantedAdapter;
    bool m_dialogs;
    CDiagnoses m_diagnoses;
    CFileChecks m_files;
    std::string m_loadedCaptureFile;
};

}  // namespace camhost
