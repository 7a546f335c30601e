// SPDX-License-Identifier: MIT
// What the tests of the border share: a folder with the adapter and the virtual
// cameras, prepared before the adapter is loaded and taken down after it.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "tests/border/support/adapter_dll.h"
#include "tests/border/support/camera_control.h"
#include "tests/border/support/host_channel.h"
#include "tests/border/support/rigs.h"
#include "tests/border/support/run_folder.h"

class CBorderTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_folder.addAdapter();
        m_folder.addVirtualCameras();
        m_control = std::make_unique<CCameraControl>(m_folder.libraryFile());
        ASSERT_TRUE(m_control->isLoaded());
        m_control->setClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
        ASSERT_NO_FATAL_FAILURE(m_control->loadRig(fourCameras));
        m_adapter = std::make_unique<CAdapterDll>(m_folder.adapterFile());
        ASSERT_TRUE(m_adapter->isLoaded());
    }

    // No camera may call a listener in an adapter that is gone.
    void TearDown() override {
        if (m_adapter != nullptr && m_adapter->isLoaded()) {
            closeAll();
            m_adapter->unload();
        }
    }

    void closeAll() {
        VideoChannelRecord record{};
        while (m_adapter->getVideoChannel(0, &record) == 0) {
            record.CloseChannel(nullptr, record.context);
        }
    }

    const CAdapterDll& adapter() const { return *m_adapter; }
    const CCameraControl& control() const { return *m_control; }
    const CRunFolder& folder() const { return m_folder; }
    CHostChannel channel(std::int32_t index) const { return CHostChannel(*m_adapter, index); }
    CHostChannel liveChannel(std::int32_t index) const {
        CHostChannel live = channel(index);
        EXPECT_EQ(live.start(), accepted());
        return live;
    }
    CHostChannel channelIn(std::int32_t index, const char* pixelFormat) const {
        CHostChannel camera = channel(index);
        EXPECT_EQ(camera.set("pixelformat", pixelFormat), accepted());
        return camera;
    }

    CRunFolder m_folder;
    std::unique_ptr<CCameraControl> m_control;
    std::unique_ptr<CAdapterDll> m_adapter;
};
