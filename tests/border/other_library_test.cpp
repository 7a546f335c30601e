// SPDX-License-Identifier: MIT
// The same adapter file on a capture library of another maker, whose exports stand
// in other places and which knows nothing of the virtual cameras.
#include <gtest/gtest.h>

#include <bit>
#include <memory>

#include "tests/border/support/adapter_dll.h"
#include "tests/border/support/host_channel.h"
#include "tests/border/support/run_folder.h"

namespace {

class OtherLibrary : public ::testing::Test {
protected:
    OtherLibrary() {
        m_folder.addAdapter();
        m_folder.addOtherLibrary();
        m_adapter = std::make_unique<CAdapterDll>(m_folder.adapterFile());
        m_camera = CHostChannel(*m_adapter, 0);
    }
    ~OtherLibrary() override { m_camera.close(); }

    static FARPROC exportOf(const char* name) {
        return ::GetProcAddress(::GetModuleHandleW(L"ORV_CAPLB11_x64.dll"), name);
    }
    static std::int32_t startsWithoutEnd() {
        return std::bit_cast<std::int32_t (*)()>(exportOf("OtherMakerStartsWithoutEnd"))();
    }

    CRunFolder m_folder;
    std::unique_ptr<CAdapterDll> m_adapter;
    CHostChannel m_camera;
};

TEST_F(OtherLibrary, HasNoneOfTheVirtualCamerasFunctions) {
    EXPECT_EQ(exportOf("virtualCamerasReset"), nullptr);
    EXPECT_NE(exportOf("OtherMakerStartsWithoutEnd"), nullptr);
}

TEST_F(OtherLibrary, ItsCameraFillsTheRecord) {
    EXPECT_STREQ(m_camera.record().deviceName, "Other Maker Cam");
    EXPECT_STREQ(m_camera.record().serialText, "C0FFEE");
    EXPECT_EQ(m_camera.record().brightness, 0.25);
    EXPECT_EQ(m_camera.record().contrast, -1.0);
    EXPECT_EQ(m_camera.record().maxWidth, 64);
    EXPECT_EQ(m_camera.record().maxHeight, 48);
    VideoChannelRecord record{};
    EXPECT_EQ(m_adapter->getVideoChannel(1, &record), 1);
}

TEST_F(OtherLibrary, ItsSettingsAreReadAndWritten) {
    EXPECT_EQ(m_camera.get("brightness value range"), accepted("25"));
    EXPECT_EQ(m_camera.get("brightness value range max"), accepted("100"));
    EXPECT_EQ(m_camera.set("brightness value range", "26"), accepted());
    EXPECT_EQ(m_camera.get("brightness value range"), accepted("26"));
    EXPECT_EQ(m_camera.get("videoformat"), accepted("Y800 (64x48)"));
    EXPECT_EQ(m_camera.execute("propertydialog"), accepted());
}

TEST_F(OtherLibrary, ItsFramesArriveUnchanged) {
    ASSERT_EQ(m_camera.start(), accepted());
    for (int i = 0; i < 20; ++i) {
        CHostMemory memory(64 * 48);
        ASSERT_TRUE(m_camera.waitForFrame());
        ASSERT_EQ(m_camera.copy(memory), done());
        for (std::uint32_t place = 1; place < 64 * 48; ++place) {
            const std::uint32_t row = place / 64;
            const std::uint32_t column = place % 64;
            ASSERT_EQ(memory[place], (row + 2 * column) % 256) << row << ", " << column;
        }
    }
    EXPECT_EQ(m_camera.stop(), accepted());
}

TEST_F(OtherLibrary, IsStartedOnceAndEndedWithTheLastCamera) {
    EXPECT_EQ(startsWithoutEnd(), 1);
    CHostChannel(*m_adapter, 0);
    EXPECT_EQ(startsWithoutEnd(), 1);
    EXPECT_EQ(m_camera.close(), accepted());
    EXPECT_EQ(startsWithoutEnd(), 0);
}

}  // namespace
