// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

void setVariable(const char* name, const char* value) {
#if defined(_WIN32)
    ::SetEnvironmentVariableA(name, value);
#else
    ::setenv(name, value, 1);
#endif
}

// Without a reset before it: in a process of its own this is the state after loading.
TEST(Loading, TheStandardRigIsThereBeforeTheLibraryIsInitialised) {
    EXPECT_EQ(0, virtualCamerasUnplug("F1A1"));
    EXPECT_EQ(1, virtualCamerasUnplug("1A2B"));
    ASSERT_TRUE(DShowLib::InitLibrary());
    std::string names;
    for (const auto& device : toStandard(DShowLib::Grabber().getAvailableVideoCaptureDevices_())) {
        names += std::string(device.c_str()) + ";";
    }
    EXPECT_EQ("SIM Colour 5;SIM Colour 1;QRM 52;SIM Frame Grabber;", names);
    DShowLib::ExitLibrary();
    virtualCamerasReset();
}

class Environment : public ::testing::Test {
protected:
    void SetUp() override {
        virtualCamerasReset();
        setVariable("VIRTUAL_CAMERAS_CLOCK", "real");
    }
    void TearDown() override {
        DShowLib::ExitLibrary();
        setVariable("VIRTUAL_CAMERAS_RIG", "");
        setVariable("VIRTUAL_CAMERAS_CLOCK", "");
        setVariable("VIRTUAL_CAMERAS_QUIET", "");
        virtualCamerasReset();
    }
    // The device names after a start with that rig.
    static std::string devices(const char* rig) {
        setVariable("VIRTUAL_CAMERAS_RIG", rig);
        EXPECT_TRUE(DShowLib::InitLibrary());
        const DShowLib::Grabber grabber;
        std::string names;
        for (const auto& device : toStandard(grabber.getAvailableVideoCaptureDevices_())) {
            names += std::string(device.c_str()) + ";";
        }
        return names;
    }
    static std::string file(const std::string& content) {
        // Other builds run the same tests at the same time.
        const auto path = std::filesystem::temp_directory_path() /
                          ("rig_" + std::to_string(std::random_device()()) + ".toml");
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
};

TEST_F(Environment, NamesABuiltInRig) {
    EXPECT_EQ("SIM Plain;", devices("no-properties"));
}

TEST_F(Environment, NamesAFile) {
    const std::string path = file("[[camera]]\nname = \"From a file\"\n");
    EXPECT_EQ("From a file;", devices(path.c_str()));
    std::filesystem::remove(path);
}

TEST_F(Environment, AWrongFileIsReportedWithItsPlaceAndLeavesNoCamera) {
    const std::string path = file("[[camera]]\nnmae = \"A\"\n");
    ::testing::internal::CaptureStderr();
    EXPECT_EQ("", devices(path.c_str()));
    EXPECT_EQ(path + ":2:1: unknown key \"nmae\" in camera; did you mean \"name\"?\n",
              ::testing::internal::GetCapturedStderr());
    std::filesystem::remove(path);
}

TEST_F(Environment, AMissingFileIsReported) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ("", devices("no-such.toml"));
    EXPECT_EQ(
        "no-such.toml: there is no such built-in rig, and no such file; built in are standard, "
        "empty, failing-open, throwing, odd, no-properties, bare\n",
        ::testing::internal::GetCapturedStderr());
}

TEST_F(Environment, AMistypedRigIsToldByItsNearName) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ("", devices("standrad"));
    EXPECT_EQ(
        "standrad: there is no such built-in rig, and no such file; did you mean \"standard\"? "
        "Built in are standard, empty, failing-open, throwing, odd, no-properties, bare\n",
        ::testing::internal::GetCapturedStderr());
}

TEST_F(Environment, AMistypedSceneIsToldWithItsPlace) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ("", devices("standard:sky"));
    EXPECT_EQ("standard:sky:1:10: there is no scene \"sky\"\n",
              ::testing::internal::GetCapturedStderr());
}

TEST_F(Environment, AQuietMistakeIsToldToWhoAsks) {
    char message[256] = "?";
    EXPECT_EQ(0, virtualCamerasRigMistake(message, sizeof(message)));
    EXPECT_STREQ("", message);
    setVariable("VIRTUAL_CAMERAS_QUIET", "1");
    ::testing::internal::CaptureStderr();
    EXPECT_EQ("", devices("standard:sky"));
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
    EXPECT_EQ(1, virtualCamerasRigMistake(message, sizeof(message)));
    EXPECT_STREQ("standard:sky:1:10: there is no scene \"sky\"", message);
}

TEST_F(Environment, DoesNotCountAgainstTheControlInterface) {
    ASSERT_EQ(0, virtualCamerasChooseRig("empty", nullptr, 0));
    EXPECT_EQ("", devices("no-properties"));
}

TEST_F(Environment, ChoosesTheClock) {
    setVariable("VIRTUAL_CAMERAS_CLOCK", "fast");
    ASSERT_EQ(0, virtualCamerasLoadRig("[[camera]]\nname = \"A\"\nformats = [\"Y800 (8x4)\"]\n"
                                       "framerate = 0.001\n",
                                       nullptr, 0));
    ASSERT_TRUE(DShowLib::InitLibrary());
    virtualCamerasRecordCalls(1);
    DShowLib::Grabber grabber;
    ASSERT_TRUE(grabber.openDev((*grabber.getAvailableVideoCaptureDevices_())[0]));
    DShowLib::FrameHandlerSink::tCreateData data;
    data.bufferCount = 5;
    ASSERT_TRUE(grabber.setSinkType(DShowLib::FrameHandlerSink::create(data)));
    ASSERT_TRUE(grabber.startLive(false));
    EXPECT_EQ(1, virtualCamerasWaitForCall("GrabberListener::frameReady", 0, deadline, nullptr));
}

TEST_F(Environment, ARigFileHasItsLimits) {
    // Both leave the standard rig.
    const std::string standard = devices("standard");
    DShowLib::ExitLibrary();
    EXPECT_EQ(devices(file(std::string(1048577, '#')).c_str()), "");
    DShowLib::ExitLibrary();
    EXPECT_EQ(devices(file("a = " + std::string(200000, '[')).c_str()), "");
    EXPECT_NE(standard, "");
}

}  // namespace
}  // namespace camera_tests
