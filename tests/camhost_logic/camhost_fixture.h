// SPDX-License-Identifier: MIT
// Fixtures for tests that run camhost as a whole, on one made-up camera to begin
// with, and for those that write files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/camhost_logic/made_up_adapter.h"

namespace camhost::test {

// A folder of the running test's own, empty at its start and gone at its end.
class CTestFolder {
public:
    CTestFolder();
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;
    ~CTestFolder();

    const std::filesystem::path& path() const { return m_path; }
    std::string file(const std::string& name) const { return (m_path / name).string(); }
    std::string content(const std::string& name) const;

private:
    std::filesystem::path m_path;
};

class CCamhostTest : public testing::Test {
protected:
    CCamhostTest() { m_system.cameras.push_back(ordinaryCamera()); }

    Outcome camhost(const std::vector<std::string>& arguments) { return run(m_system, arguments); }
    MadeUpCamera& camera() { return m_system.cameras[0]; }

    CMadeUpSystem m_system;
    CTestFolder m_folder;
};

}  // namespace camhost::test
