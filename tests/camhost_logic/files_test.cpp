// SPDX-License-Identifier: MIT
#include "camhost/base/files.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "camhost/base/failure.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Files : public testing::Test {
protected:
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string refusal(const std::string& name, std::string_view text) {
        try {
            writeTextFile(name, text);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.exit, ExitCode::Refused);
            return failure.message;
        }
        return "written";
    }

    test::CTestFolder m_folder;
};

TEST_F(Files, TakeThePlaceOfOlderOnesAndLeaveNothingBeside) {
    writeTextFile(m_folder.file("a.json"), "old and long");
    writeTextFile(m_folder.file("a.json"), "new");
    EXPECT_EQ(m_folder.content("a.json"), "new");
    EXPECT_THAT(names(), ElementsAre("a.json"));
}

TEST_F(Files, KeepTheirContentWhenTheNewOneCanNotBeWritten) {
    writeTextFile(m_folder.file("a.json"), "good and old");
    // In the way of the new one.
    std::filesystem::create_directory(m_folder.file("a.json.part"));
    EXPECT_THAT(refusal(m_folder.file("a.json"), "new"), HasSubstr("can not write \""));
    EXPECT_EQ(m_folder.content("a.json"), "good and old");
}

TEST_F(Files, ThatCanNotBeWrittenSayWhyAndLeaveNothing) {
    EXPECT_THAT(refusal(m_folder.file("missing/a.json"), "new"), HasSubstr(": No such file"));
    EXPECT_THAT(names(), ElementsAre());
}

#ifndef _WIN32
TEST_F(Files, OfAFullDiskSayThatItIsFull) {
    EXPECT_EQ(refusal("/dev/full", "new"), "can not write \"/dev/full\": No space left on device");
}
#endif

TEST_F(Files, AreReadUpToTheirLimit) {
    writeTextFile(m_folder.file("a.json"), std::string(1048576, 'x'));
    EXPECT_EQ(readTextFile(m_folder.file("a.json")).size(), 1048576U);
    writeTextFile(m_folder.file("a.json"), std::string(1048577, 'x'));
    try {
        readTextFile(m_folder.file("a.json"));
        FAIL() << "read";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.exit, ExitCode::Usage);
        EXPECT_THAT(failure.message, HasSubstr("is larger than 1048576 bytes"));
    }
}

TEST_F(Files, AFolderIsNoFileToRead) {
    try {
        readTextFile(m_folder.path().string());
        FAIL() << "read";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.exit, ExitCode::Usage);
        EXPECT_THAT(failure.message, HasSubstr("can not read \""));
    }
}

}  // namespace
}  // namespace camhost
