// SPDX-License-Identifier: MIT
#include "tests/camhost_logic/camhost_fixture.h"

#include <fstream>
#include <sstream>

namespace camhost::test {

CTestFolder::CTestFolder() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    m_path = std::filesystem::temp_directory_path() /
             (std::string("camhost_") + test->test_suite_name() + "_" + test->name());
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
}

CTestFolder::~CTestFolder() {
    std::filesystem::remove_all(m_path);
}

std::string CTestFolder::content(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(m_path / name, std::ios::binary).rdbuf();
    return text.str();
}

}  // namespace camhost::test
