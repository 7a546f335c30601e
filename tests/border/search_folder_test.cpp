// SPDX-License-Identifier: MIT
// Where the capture library comes from, and what the adapter leaves in the process.
#include <gtest/gtest.h>

#include <array>

#include "tests/border/support/border_test.h"
#include "tests/border/support/message_boxes.h"

namespace {

std::wstring searchFolder() {
    std::array<wchar_t, 1024> folder{};
    ::GetDllDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
    return folder.data();
}

bool isTraceFileBelow(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().filename() == "orvlum.txt") {
            return true;
        }
    }
    return false;
}

TEST(SearchFolder, LibraryComesFromTheAdaptersFolderWhereverTheProcessIs) {
    const CRunFolder folder;
    const CRunFolder elsewhere;
    folder.addAdapter();
    folder.addOtherLibrary();
    elsewhere.addDamagedLibrary();
    const CCurrentFolder current(elsewhere.path());
    ASSERT_NE(folderOfModule(nullptr), folder.pathWithBackslash());

    const CAdapterDll adapter(folder.adapterFile());
    VideoChannelRecord record{};
    ASSERT_EQ(adapter.getVideoChannel(0, &record), 0);
    EXPECT_EQ(folderOfModule(L"ORV_CAPLB11_x64.dll"), folder.pathWithBackslash());
    record.CloseChannel(nullptr, record.context);
}

TEST(SearchFolder, ALibraryElsewhereDoesNotCountAsPresent) {
    const CRunFolder folder;
    const CRunFolder elsewhere;
    folder.addAdapter();
    elsewhere.addOtherLibrary();
    const CCurrentFolder current(elsewhere.path());

    CMessageBoxes boxes;
    const CAdapterDll adapter(folder.adapterFile());
    VideoChannelRecord record{};
    EXPECT_EQ(adapter.getVideoChannel(0, &record), 1);
    EXPECT_EQ(boxes.take().size(), 1U);
    EXPECT_FALSE(isLibraryLoaded());
}

TEST(SearchFolder, LoadingTheAdapterDoesNotSetIt) {
    const CRunFolder folder;
    folder.addAdapter();
    const CAdapterDll adapter(folder.adapterFile());
    EXPECT_EQ(searchFolder(), L"");
}

TEST(SearchFolder, IsTheAdaptersAlsoAfterACallThatFails) {
    const CRunFolder folder;
    folder.addAdapter();
    CMessageBoxes boxes;
    const CAdapterDll adapter(folder.adapterFile());
    EXPECT_EQ(adapter.getVideoChannel(0, nullptr), 1);
    EXPECT_EQ(searchFolder(), folder.pathWithBackslash());
}

class SearchFolderOfCameras : public CBorderTest {};

TEST_F(SearchFolderOfCameras, IsSetAnewByEveryCall) {
    for (std::int32_t index : {0, 3, 4, 1000}) {
        ::SetDllDirectoryW(L"C:\\");
        VideoChannelRecord record{};
        adapter().getVideoChannel(index, &record);
        EXPECT_EQ(searchFolder(), folder().pathWithBackslash()) << "index " << index;
    }
}

TEST_F(SearchFolderOfCameras, NoTraceFileIsWritten) {
    const CRunFolder workFolder;
    const CCurrentFolder current(workFolder.path());
    const CHostChannel camera = channel(0);
    EXPECT_EQ(camera.set("pixelformat", "rgb24"), accepted());
    EXPECT_EQ(camera.start(), accepted());
    EXPECT_EQ(camera.wait(), noFrame());
    EXPECT_EQ(camera.stop(), accepted());
    closeAll();

    EXPECT_FALSE(isTraceFileBelow(workFolder.path()));
    EXPECT_FALSE(isTraceFileBelow(folder().path()));
    EXPECT_FALSE(isTraceFileBelow(folderOfModule(nullptr)));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::temp_directory_path() / "orvlum.txt"));
}

}  // namespace
