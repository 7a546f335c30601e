// SPDX-License-Identifier: MIT
// The rigs of the folder rigs/, as a user chooses them: by the environment.
#include <cstdlib>
#include <optional>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

void setRig(const std::string& value) {
#if defined(_WIN32)
    ::SetEnvironmentVariableA("VIRTUAL_CAMERAS_RIG", value.c_str());
#else
    ::setenv("VIRTUAL_CAMERAS_RIG", value.c_str(), 1);
#endif
}

class ReadyRigs : public ::testing::Test {
protected:
    void begin(const std::string& rig) {
        virtualCamerasReset();
        setRig(VELMORA_SOURCE_DIR "/rigs/" + rig);
        virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
        ASSERT_TRUE(DShowLib::InitLibrary());
        m_grabber.emplace().addListener(&m_listener, 0xFFFFFFFF);
    }
    void TearDown() override {
        m_listener.last = {};
        m_grabber.reset();
        DShowLib::ExitLibrary();
        setRig("");
        virtualCamerasReset();
    }
    // Opens the camera and starts it.
    bool startLive(std::size_t index, const GUID& subtype) {
        const auto devices = toStandard(m_grabber->getAvailableVideoCaptureDevices_());
        if (index >= devices.size() || !m_grabber->openDev(devices[index])) {
            return false;
        }
        DShowLib::FrameHandlerSink::tCreateData data;
        data.bufferCount = 5;
        data.frameTypes.push_back({subtype, 0, 0, 0});
        return m_grabber->setSinkType(DShowLib::FrameHandlerSink::create(data)) &&
               m_grabber->startLive(false);
    }
    // Those of the list, in its order.
    std::vector<std::int64_t> serials() const {
        std::vector<std::int64_t> found;
        for (const auto& device : toStandard(m_grabber->getAvailableVideoCaptureDevices_())) {
            device.getSerialNumber(found.emplace_back());
        }
        return found;
    }

    CMemory m_listener;
    std::optional<DShowLib::Grabber> m_grabber;
};

using Serials = std::vector<std::int64_t>;

TEST_F(ReadyRigs, TwoEqualModelsChangePlacesWhenOneComesBack) {
    begin("two_equal_models.toml");
    EXPECT_EQ((Serials{0xA1, 0xA2}), serials());
    ASSERT_TRUE(startLive(0, subtypeY800));
    virtualCamerasStepClock(5 * oneSecond);
    EXPECT_EQ((Serials{0xA1}), serials());
    virtualCamerasStepClock(2 * oneSecond);
    EXPECT_EQ((Serials{0xA2, 0xA1}), serials());
    EXPECT_EQ(0, m_listener.losses);
    EXPECT_EQ(210U, m_listener.frames.size());
}

TEST_F(ReadyRigs, TheFlakyCableLosesTheCameraTwiceAndFramesBetween) {
    begin("flaky_cable.toml");
    ASSERT_TRUE(startLive(0, subtypeY800));
    int refusedStarts = 0;
    for (int i = 0; i < 200; ++i) {
        virtualCamerasStepClock(oneSecond / 10);
        if (!m_grabber->isLive() && !serials().empty() && !startLive(0, subtypeY800)) {
            ++refusedStarts;
        }
    }
    EXPECT_EQ(2, m_listener.losses);
    EXPECT_EQ(1, refusedStarts);
    EXPECT_GT(m_listener.dropped, 5);
    EXPECT_GT(m_listener.frames.size(), 300U);
}

TEST_F(ReadyRigs, TheSlowTriggerReleasesAFrameEverySecondAndAHalf) {
    begin("slow_trigger.toml");
    ASSERT_TRUE(startLive(0, subtypeY800));
    EXPECT_EQ(1U, virtualCamerasStepClock(oneSecond / 2));
    EXPECT_EQ(0U, virtualCamerasStepClock(3 * oneSecond / 2 - 1));
    EXPECT_EQ(3U, virtualCamerasStepClock(3 * oneSecond + 1));
}

TEST_F(ReadyRigs, ManySettingsAreFourHundred) {
    begin("many_settings.toml");
    ASSERT_TRUE(startLive(0, subtypeY800));
    const auto items = m_grabber->getAvailableVCDProperties();
    LONG count = 0;
    ASSERT_EQ(S_OK, items->getCount(&count));
    LONG settings = 0;
    for (LONG i = 1; i <= count; ++i) {
        DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
        ASSERT_EQ(S_OK, items->getItem(i, item.put()));
        LONG elements = 0;
        ASSERT_EQ(S_OK, item->getCount(&elements));
        settings += elements;
    }
    EXPECT_EQ(400, settings);
}

TEST_F(ReadyRigs, TheFilmShowsItsPicturesInTurn) {
    begin("film.toml");
    ASSERT_TRUE(startLive(0, subtypeY800));
    std::string redness;
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(1, virtualCamerasDeliverFrame("F11"));
        // Middle row, at the left edge of where the square of each picture is.
        for (const std::size_t column : {20U, 44U, 68U, 92U}) {
            redness += m_listener.pixels[48 * 128 + column] > 90 &&
                               m_listener.pixels[48 * 128 + column + 8] ==
                                   m_listener.pixels[48 * 128 + column]
                           ? 'x'
                           : '.';
        }
        redness += ' ';
    }
    EXPECT_EQ("x... .x.. ..x. ...x x... ", redness);
}

TEST_F(ReadyRigs, TheCroppedFilmIsTheMiddleOfEachPicture) {
    begin("film.toml");
    ASSERT_TRUE(startLive(1, subtypeRGB24));
    ASSERT_EQ(1, virtualCamerasDeliverFrame("F12"));
    ASSERT_EQ(3600U, m_listener.pixels.size());
    // Column 12 of the picture, behind the square's edge, row 24 of 48.
    EXPECT_EQ((std::vector<std::uint8_t>{40, 40, 220}),
              std::vector<std::uint8_t>(m_listener.pixels.begin() + 15 * 120,
                                        m_listener.pixels.begin() + 15 * 120 + 3));
}

}  // namespace
}  // namespace camera_tests
