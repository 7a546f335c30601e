// SPDX-License-Identifier: MIT
// Loading the adapter with and without the capture library beside it.
#include <gtest/gtest.h>

#include "tests/border/support/adapter_dll.h"
#include "tests/border/support/host_channel.h"
#include "tests/border/support/message_boxes.h"
#include "tests/border/support/run_folder.h"

namespace {

class Loading : public ::testing::Test {
protected:
    Loading() { m_folder.addAdapter(); }

    std::int32_t firstCall(const CAdapterDll& adapter) {
        return adapter.getVideoChannel(0, &m_record);
    }

    CRunFolder m_folder;
    CMessageBoxes m_boxes;
    VideoChannelRecord m_record{};
};

TEST_F(Loading, NeedsNoCaptureLibrary) {
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_TRUE(adapter.isLoaded());
    EXPECT_FALSE(isLibraryLoaded());
    EXPECT_TRUE(m_boxes.seen().empty());
}

TEST_F(Loading, DoesNotLoadTheCaptureLibraryBesideTheAdapter) {
    m_folder.addVirtualCameras();
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_TRUE(adapter.isLoaded());
    EXPECT_FALSE(isLibraryLoaded());
}

TEST_F(Loading, FirstCallLoadsTheCaptureLibrary) {
    m_folder.addOtherLibrary();
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(firstCall(adapter), 0);
    EXPECT_TRUE(isLibraryLoaded());
    EXPECT_TRUE(m_boxes.seen().empty());
    m_record.CloseChannel(nullptr, m_record.context);
}

TEST_F(Loading, EveryCallWithoutTheLibraryShowsTheBoxAndFails) {
    const CAdapterDll adapter(m_folder.adapterFile());
    for (std::int32_t index : {0, 0, 1, -1}) {
        EXPECT_EQ(adapter.getVideoChannel(index, &m_record), 1);
        EXPECT_EQ(m_boxes.take(), std::vector{libraryMissing});
    }
    EXPECT_FALSE(isLibraryLoaded());
}

TEST_F(Loading, WithoutTheLibraryTheRecordStaysAsItWas) {
    const CAdapterDll adapter(m_folder.adapterFile());
    CHostMemory bytes(sizeof(VideoChannelRecord));
    EXPECT_EQ(adapter.getVideoChannel(0, reinterpret_cast<VideoChannelRecord*>(bytes.data())), 1);
    EXPECT_TRUE(bytes.isUntouched());
}

TEST_F(Loading, RecoversOnceTheLibraryIsThere) {
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(firstCall(adapter), 1);
    EXPECT_EQ(m_boxes.take().size(), 1U);

    m_folder.addOtherLibrary();
    EXPECT_EQ(firstCall(adapter), 0);
    EXPECT_STREQ(m_record.deviceName, "Other Maker Cam");
    EXPECT_TRUE(m_boxes.seen().empty());
    m_record.CloseChannel(nullptr, m_record.context);
}

TEST_F(Loading, ADamagedLibraryIsReportedAsMissing) {
    m_folder.addDamagedLibrary();
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(firstCall(adapter), 1);
    EXPECT_EQ(firstCall(adapter), 1);
    EXPECT_EQ(m_boxes.take(), (std::vector{libraryMissing, libraryMissing}));
}

TEST_F(Loading, AMatchingFileOfAnotherNameIsReportedAsMissing) {
    m_folder.addDamagedLibrary(L"ORV_CAPLB11_old.dll");
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(firstCall(adapter), 1);
    EXPECT_EQ(m_boxes.take(), std::vector{libraryMissing});
}

TEST_F(Loading, RecoversFromADamagedLibraryThatWasReplaced) {
    m_folder.addDamagedLibrary();
    const CAdapterDll adapter(m_folder.adapterFile());
    EXPECT_EQ(firstCall(adapter), 1);
    std::filesystem::remove(m_folder.libraryFile());
    m_folder.addOtherLibrary();
    EXPECT_EQ(firstCall(adapter), 0);
    EXPECT_EQ(m_boxes.take().size(), 1U);
    m_record.CloseChannel(nullptr, m_record.context);
}

}  // namespace
