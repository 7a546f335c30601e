// SPDX-License-Identifier: MIT
// How the path of the adapter's file becomes its folder.
#include "adapter/module_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Path = std::vector<wchar_t>;

// The characters of the text and a terminator.
Path buffer(std::wstring_view text) {
    Path path(text.begin(), text.end());
    path.push_back(L'\0');
    return path;
}

std::wstring folderOf(std::wstring_view file) {
    Path path = buffer(file);
    cutToFolder(path);
    return path.data();
}

TEST(ModuleFolder, KeepsTheLastBackslash) {
    EXPECT_EQ(L"C:\\adapter\\", folderOf(L"C:\\adapter\\velmora_adapter.dll"));
    EXPECT_EQ(L"C:\\a\\b c\\d\\", folderOf(L"C:\\a\\b c\\d\\e"));
    EXPECT_EQ(L"\\\\server\\share\\", folderOf(L"\\\\server\\share\\x.dll"));
    EXPECT_EQ(L"C:\\", folderOf(L"C:\\x.dll"));
}

TEST(ModuleFolder, FolderStaysAsItIs) {
    EXPECT_EQ(L"C:\\adapter\\", folderOf(L"C:\\adapter\\"));
    EXPECT_EQ(L"\\", folderOf(L"\\"));
}

TEST(ModuleFolder, SlashIsNoBackslash) {
    EXPECT_EQ(L"C:\\adapter\\", folderOf(L"C:\\adapter\\sub/x.dll"));
}

TEST(ModuleFolder, FirstCharacterIsNeverCleared) {
    EXPECT_EQ(L"v", folderOf(L"velmora_adapter.dll"));
    EXPECT_EQ(L"v", folderOf(L"v"));
    EXPECT_EQ(L"\\", folderOf(L"\\x.dll"));
}

TEST(ModuleFolder, EmptyPathStaysEmpty) {
    EXPECT_EQ(L"", folderOf(L""));
    cutToFolder({});
}

TEST(ModuleFolder, EveryCharacterBehindTheBackslashIsCleared) {
    Path path = buffer(L"C:\\adapter\\velmora_adapter.dll");
    cutToFolder(path);
    EXPECT_TRUE(std::all_of(path.begin() + 11, path.end(),
                            [](wchar_t character) { return character == L'\0'; }));
}

TEST(ModuleFolder, NothingBehindTheTerminatorIsTouched) {
    Path path = buffer(L"C:\\a\\x.dll");
    path.insert(path.end(), 20, L'#');
    cutToFolder(path);
    EXPECT_EQ(20, std::count(path.begin(), path.end(), L'#'));
    EXPECT_EQ(std::wstring(L"C:\\a\\"), path.data());
}

TEST(ModuleFolder, PathWithoutRoomForATerminatorIsCutAllTheSame) {
    Path path = {L'C', L':', L'\\', L'x', L'y'};
    cutToFolder(path);
    EXPECT_EQ((Path{L'C', L':', L'\\', L'\0', L'\0'}), path);
}

}  // namespace
