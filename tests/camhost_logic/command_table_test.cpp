// SPDX-License-Identifier: MIT
// The table of commands against the files that define them and the manual.
#include "camhost/application/command_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "camhost/base/files.h"

namespace camhost {
namespace {

using testing::UnorderedElementsAreArray;

const std::string root = VELMORA_SOURCE_DIR;

std::vector<std::string> namesInTable() {
    std::vector<std::string> names;
    for (const auto& command : allCommands()) {
        names.emplace_back(command->help().name);
    }
    return names;
}

TEST(CommandTable, EveryFileOfACommandHasARowOfItsName) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(root + "/camhost/commands")) {
        if (entry.path().extension() == ".cpp") {
            files.push_back(entry.path().stem().string());
        }
    }
    EXPECT_THAT(namesInTable(), UnorderedElementsAreArray(files));
}

TEST(CommandTable, TheManualHasALineForEveryCommand) {
    const std::string manual = readTextFile(root + "/docs/camhost.md");
    for (const std::string& name : namesInTable()) {
        const bool alone = manual.find("| `" + name + "` |") != manual.npos;
        const bool withOptions = manual.find("`" + name + " ") != manual.npos;
        EXPECT_TRUE(alone || withOptions) << name;
    }
}

}  // namespace
}  // namespace camhost
