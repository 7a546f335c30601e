// SPDX-License-Identifier: MIT
// What the adapter does to COM on the threads that load and call it.
#include <gtest/gtest.h>

#include <thread>

#include "tests/border/support/border_test.h"
#include "tests/border/support/com_state.h"

namespace {

constexpr ComState without = {Apartment::none, 0};

class ComOfTheLoadingThread : public ::testing::Test {
protected:
    ComOfTheLoadingThread() {
        m_folder.addAdapter();
        endCom();
    }
    ~ComOfTheLoadingThread() override { endCom(); }

    ComState stateAfterLoading() const {
        const CAdapterDll adapter(m_folder.adapterFile());
        EXPECT_TRUE(adapter.isLoaded());
        return comState();
    }

    CRunFolder m_folder;
};

TEST_F(ComOfTheLoadingThread, IsStartedInOneApartment) {
    ASSERT_EQ(comState(), without);
    EXPECT_EQ(stateAfterLoading(), (ComState{Apartment::single, 1}));
}

TEST_F(ComOfTheLoadingThread, AHostsMultithreadedApartmentIsReplaced) {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(stateAfterLoading(), (ComState{Apartment::single, 1}));
}

TEST_F(ComOfTheLoadingThread, AHostsSingleThreadedApartmentIsStoppedAndStarted) {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_EQ(stateAfterLoading(), (ComState{Apartment::single, 1}));
}

TEST_F(ComOfTheLoadingThread, AHostThatStartedTwiceIsStoppedOnce) {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE);
    // One start is left, so that OLE can not have its own apartment.
    EXPECT_EQ(stateAfterLoading(), (ComState{Apartment::multi, 1}));
}

TEST_F(ComOfTheLoadingThread, StaysStartedWhenTheAdapterIsUnloaded) {
    CAdapterDll adapter(m_folder.adapterFile());
    adapter.unload();
    EXPECT_EQ(comState(), (ComState{Apartment::single, 1}));
}

TEST_F(ComOfTheLoadingThread, IsTheOneThatLoadsAndNoOther) {
    std::thread([this] {
        EXPECT_EQ(stateAfterLoading(), (ComState{Apartment::single, 1}));
    }).join();
    EXPECT_EQ(comState(), without);
}

class ComOfAnAcquisitionThread : public CBorderTest {
protected:
    void SetUp() override {
        CBorderTest::SetUp();
        m_camera = channel(0);
    }

    // Runs on a thread of its own, which has started COM `count` times before.
    template <class Work>
    static void onThread(DWORD kind, int count, Work&& work) {
        std::thread([&] {
            for (int i = 0; i < count; ++i) {
                ::CoInitializeEx(nullptr, kind);
            }
            work();
            endCom();
        }).join();
    }

    void loseCamera() {
        m_camera.start();
        control().unplug(greySerial);
    }

    CHostChannel m_camera;
};

TEST_F(ComOfAnAcquisitionThread, IsEndedAgainWhereTheAdapterStartedIt) {
    onThread(COINIT_MULTITHREADED, 0, [this] {
        EXPECT_EQ(m_camera.start(), accepted());
        EXPECT_EQ(comState(), without);
        EXPECT_EQ(m_camera.wait(), noFrame());
        EXPECT_EQ(comState(), without);
        EXPECT_EQ(m_camera.stop(), accepted());
        EXPECT_EQ(comState(), without);
        loseCamera();
        EXPECT_EQ(m_camera.wait().result, 1);
        EXPECT_EQ(comState(), without);
    });
}

TEST_F(ComOfAnAcquisitionThread, AStartKeepsOneMoreInAHostsMultithreadedApartment) {
    onThread(COINIT_MULTITHREADED, 1, [this] {
        EXPECT_EQ(m_camera.start(), accepted());
        EXPECT_EQ(comState(), (ComState{Apartment::multi, 2}));
    });
}

TEST_F(ComOfAnAcquisitionThread, AFailedStartKeepsOneMoreToo) {
    onThread(COINIT_MULTITHREADED, 1, [this] {
        control().failNext("Grabber::startLive", VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
        EXPECT_EQ(m_camera.start().result, 1);
        EXPECT_EQ(comState(), (ComState{Apartment::multi, 2}));
    });
}

TEST_F(ComOfAnAcquisitionThread, ARefusedStartDoesNotTouchIt) {
    onThread(COINIT_MULTITHREADED, 1, [this] {
        m_camera.start();
        const ComState before = comState();
        EXPECT_EQ(m_camera.start(), refused());
        EXPECT_EQ(comState(), before);
    });
}

TEST_F(ComOfAnAcquisitionThread, AStopIsBalancedInAHostsMultithreadedApartment) {
    EXPECT_EQ(m_camera.start(), accepted());
    onThread(COINIT_MULTITHREADED, 1, [this] {
        EXPECT_EQ(m_camera.stop(), accepted());
        EXPECT_EQ(comState(), (ComState{Apartment::multi, 1}));
    });
}

TEST_F(ComOfAnAcquisitionThread, ASearchForALostCameraIsBalanced) {
    loseCamera();
    onThread(COINIT_MULTITHREADED, 2, [this] {
        EXPECT_EQ(m_camera.wait().result, 1);
        EXPECT_EQ(comState(), (ComState{Apartment::multi, 2}));
    });
}

TEST_F(ComOfAnAcquisitionThread, AHostsSingleThreadedApartmentIsLeftAlone) {
    onThread(COINIT_APARTMENTTHREADED, 1, [this] {
        constexpr ComState own = {Apartment::single, 1};
        EXPECT_EQ(m_camera.start(), accepted());
        EXPECT_EQ(comState(), own);
        EXPECT_EQ(m_camera.stop(), accepted());
        EXPECT_EQ(comState(), own);
        loseCamera();
        EXPECT_EQ(m_camera.wait().result, 1);
        EXPECT_EQ(comState(), own);
    });
}

}  // namespace
