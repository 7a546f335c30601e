// SPDX-License-Identifier: MIT
// Files that have the capture library's name and are not what the adapter needs.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/border/support/adapter_dll.h"
#include "tests/border/support/host_channel.h"
#include "tests/border/support/message_boxes.h"
#include "tests/border/support/run_folder.h"

namespace {

// A whole library but for one function, whose exported name gets another last letter, as
// either kind of compiler mangles it.
void removeExport(const std::wstring& file, const std::string& function) {
    const std::filesystem::path path(file);
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    in.close();
    int changed = 0;
    for (const std::string& mangled :
         {std::to_string(function.size()) + function + "E", "?" + function + "@"}) {
        for (std::size_t place = bytes.find(mangled); place != std::string::npos;
             place = bytes.find(mangled, place)) {
            bytes[place + mangled.size() - 2] = '_';
            ++changed;
        }
    }
    ASSERT_GE(changed, 1);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

class ForeignLibrary : public ::testing::Test {
protected:
    ForeignLibrary() { m_folder.addAdapter(); }

    CRunFolder m_folder;
    CMessageBoxes m_boxes;
    VideoChannelRecord m_record{};
};

TEST_F(ForeignLibrary, ThatTheHostHasLoadedFromElsewhereIsNotCalled) {
    const CRunFolder elsewhere;
    elsewhere.addOtherLibrary();
    const HMODULE other = ::LoadLibraryW(elsewhere.libraryFile().c_str());
    ASSERT_NE(other, nullptr);
    m_folder.addVirtualCameras();
    const CAdapterDll adapter(m_folder.adapterFile());
    ASSERT_EQ(adapter.getVideoChannel(0, &m_record), 0);
    EXPECT_STREQ(m_record.deviceName, "SIM Mono 23");
    m_record.CloseChannel(nullptr, m_record.context);
    ::FreeLibrary(other);
}

TEST_F(ForeignLibrary, ThatLacksAFunctionShowsTheBoxAndNeverEndsTheHost) {
    m_folder.addVirtualCameras();
    removeExport(m_folder.libraryFile(), "ExitLibrary");
    const CAdapterDll adapter(m_folder.adapterFile());
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(adapter.getVideoChannel(0, &m_record), 1);
        EXPECT_EQ(m_boxes.take(), std::vector{libraryMissing});
    }
    EXPECT_EQ(m_record.context, nullptr);
    EXPECT_FALSE(isLibraryLoaded()) << "so that a better file can take its place";
}

TEST_F(ForeignLibrary, ThatWasMendedServes) {
    m_folder.addVirtualCameras();
    removeExport(m_folder.libraryFile(), "startLive");
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(adapter.getVideoChannel(0, &m_record), 1);
    EXPECT_EQ(m_boxes.take().size(), 1U);
    m_folder.addVirtualCameras();
    EXPECT_EQ(adapter.getVideoChannel(0, &m_record), 0);
    EXPECT_TRUE(m_boxes.seen().empty());
    m_record.CloseChannel(nullptr, m_record.context);
}

TEST_F(ForeignLibrary, BesideTheAdapterUnderAnotherNameIsNotHelpedByTheSearchPath) {
    const CRunFolder elsewhere;
    elsewhere.addOtherLibrary();
    const CCurrentFolder current(elsewhere.path());
    m_folder.addDamagedLibrary(L"ORV_CAPLB11_old.dll");
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(adapter.getVideoChannel(0, &m_record), 1);
    EXPECT_EQ(m_boxes.take(), std::vector{libraryMissing});
    EXPECT_FALSE(isLibraryLoaded());
}

}  // namespace
