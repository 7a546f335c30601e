// SPDX-License-Identifier: MIT
#include "camhost/base/files.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

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

TEST_F(Files, AreWrittenOverNobodyElsesPart) {
    writeTextFile(m_folder.file("a.json.part"), "somebody's");
    writeTextFile(m_folder.file("a.json"), "new");
    EXPECT_EQ(m_folder.content("a.json"), "new");
    EXPECT_EQ(m_folder.content("a.json.part"), "somebody's");
    EXPECT_THAT(names(), ElementsAre("a.json", "a.json.part"));
}

TEST_F(Files, KeepTheirContentWhereNoNameIsFree) {
    writeTextFile(m_folder.file("a.json"), "good and old");
    for (const char* taken :
         {"a.json.part", "a.json.part1", "a.json.part2", "a.json.part3", "a.json.part4",
          "a.json.part5", "a.json.part6", "a.json.part7", "a.json.part8", "a.json.part9"}) {
        std::filesystem::create_directory(m_folder.file(taken));
    }
    EXPECT_THAT(refusal(m_folder.file("a.json"), "new"),
                HasSubstr("\": files of its name with \".part\" to \".part9\" are in the way"));
    EXPECT_EQ(m_folder.content("a.json"), "good and old");
    EXPECT_EQ(names().size(), 11U);
}

TEST_F(Files, ThatCanNotBeWrittenSayWhyAndLeaveNothing) {
    EXPECT_THAT(refusal(m_folder.file("missing/a.json"), "new"), HasSubstr(": No such file"));
    EXPECT_THAT(names(), ElementsAre());
}

#ifndef _WIN32
TEST_F(Files, KeepTheirContentWhenTheNewOneCanNotBeWrittenWhole) {
    writeTextFile(m_folder.file("a.json"), "good and old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit few{4096, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &few);
    const std::string reason = refusal(m_folder.file("a.json"), std::string(100000, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(reason, HasSubstr("\": File too large"));
    EXPECT_EQ(m_folder.content("a.json"), "good and old");
    EXPECT_THAT(names(), ElementsAre("a.json"));
}

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
