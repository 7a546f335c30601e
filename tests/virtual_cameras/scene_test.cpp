// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tests/virtual_cameras/camera_rig.h"
#include "virtual_cameras/scenes/scene_code.h"

namespace camera_tests {
namespace {

using virtual_cameras::counterFrame;
using virtual_cameras::counterValue;
using virtual_cameras::Plane;

TEST(SceneCode, ValuesHoldPlaneRowColumnAndFrame) {
    EXPECT_EQ(0x00, counterValue(0, 0, 0, Plane::blue));
    EXPECT_EQ(0x40, counterValue(0, 0, 0, Plane::green));
    EXPECT_EQ(0x80, counterValue(0, 0, 0, Plane::red));
    EXPECT_EQ(0xC0, counterValue(0, 0, 0, Plane::grey));
    EXPECT_EQ(0xC0 + 39, counterValue(0, 999, 8, Plane::grey));  // 999 = 15 * 64 + 39
    EXPECT_EQ(0xC0 + 15, counterValue(0, 999, 9, Plane::grey));
    EXPECT_EQ(0xC0 + 22, counterValue(0, 0, 8 * 150 + 2, Plane::grey));  // 150 = 2 * 64 + 22
    EXPECT_EQ(0xC0 + 2, counterValue(0, 0, 8 * 150 + 3, Plane::grey));
    EXPECT_EQ(0x05, counterValue(5, 77, 12, Plane::blue));
    EXPECT_EQ(0x01, counterValue(64, 77, 13, Plane::blue));
}

TEST(SceneCode, TheFrameNumberIsReadBack) {
    constexpr std::uint32_t frame = 0xABCDEF;
    const std::uint8_t columns[4] = {
        counterValue(frame, 3, 4, Plane::red), counterValue(frame, 3, 5, Plane::red),
        counterValue(frame, 3, 6, Plane::red), counterValue(frame, 3, 7, Plane::red)};
    EXPECT_EQ(0xABCDEFU, counterFrame(columns));
}

class Scene : public CRigTest {
protected:
    // One frame of the first camera of a rig, as a sink of that subtype gets it.
    std::vector<std::uint8_t> frameOf(const std::string& toml, const GUID& subtype) {
        load("[[camera]]\nname = \"A\"\n" + toml);
        DShowLib::Grabber grabber;
        CMemory listener;
        EXPECT_TRUE(grabber.addListener(&listener, 0xFFFFFFFF));
        EXPECT_TRUE(open(grabber, 0));
        EXPECT_TRUE(grabber.setSinkType(sinkFor(subtype)));
        EXPECT_TRUE(grabber.startLive(false)) << errorOf(grabber);
        EXPECT_EQ(1, virtualCamerasDeliverFrame("A"));
        grabber.stopLive();
        return listener.pixels;
    }
};

TEST_F(Scene, MonochromeCamerasSeeGreyTopRowFirst) {
    const auto pixels = frameOf("formats = [\"Y800 (11x3)\"]\nscene = \"counter\"\n", subtypeY800);
    const std::vector<std::uint8_t> expected = {
        0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1,  //
        0xC1, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC1,  //
        0xC2, 0xC0, 0xC0, 0xC0, 0xC1, 0xC0, 0xC0, 0xC0, 0xC2, 0xC0, 0xC1};
    EXPECT_EQ(expected, pixels);
}

TEST_F(Scene, Rgb24IsBlueGreenRedBottomRowFirst) {
    const auto pixels = frameOf("formats = [\"RGB24 (6x2)\"]\nscene = \"counter\"\n", subtypeRGB24);
    const std::vector<std::uint8_t> expected = {
        0x01, 0x41, 0x81, 0x00, 0x40, 0x80, 0x00, 0x40, 0x80,
        0x00, 0x40, 0x80, 0x01, 0x41, 0x81, 0x00, 0x40, 0x80,  //
        0x00, 0x40, 0x80, 0x00, 0x40, 0x80, 0x00, 0x40, 0x80,
        0x00, 0x40, 0x80, 0x01, 0x41, 0x81, 0x00, 0x40, 0x80};
    EXPECT_EQ(expected, pixels);
}

TEST_F(Scene, Rgb32EndsEveryPixelWithZero) {
    const auto pixels = frameOf("formats = [\"BY8 (2x2)\"]\nscene = \"counter\"\n", subtypeRGB32);
    const std::vector<std::uint8_t> expected = {0x01, 0x41, 0x81, 0, 0x00, 0x40, 0x80, 0,
                                                0x00, 0x40, 0x80, 0, 0x00, 0x40, 0x80, 0};
    EXPECT_EQ(expected, pixels);
}

TEST_F(Scene, Y800FormatsOfColourCamerasAreTheRawMosaic) {
    const std::string formats = "formats = [\"Y800 (2x2)\"]\nscene = \"counter\"\ncolour = true\n";
    EXPECT_EQ((std::vector<std::uint8_t>{0x40, 0x00, 0x81, 0x40}), frameOf(formats, subtypeY800));
    EXPECT_EQ((std::vector<std::uint8_t>{0x40, 0x80, 0x01, 0x40}),
              frameOf(formats + "bayer = \"GRBG\"\n", subtypeY800));
    EXPECT_EQ((std::vector<std::uint8_t>{0x00, 0x40, 0x41, 0x80}),
              frameOf(formats + "bayer = \"BGGR\"\n", subtypeY800));
    EXPECT_EQ((std::vector<std::uint8_t>{0x80, 0x40, 0x41, 0x00}),
              frameOf(formats + "bayer = \"RGGB\"\n", subtypeY800));
}

TEST_F(Scene, OtherFormatsOfColourCamerasBecomeGreyInY800) {
    EXPECT_EQ((std::vector<std::uint8_t>{0xC0, 0xC0, 0xC1, 0xC0}),
              frameOf("formats = [\"BY8 (2x2)\"]\nscene = \"counter\"\n", subtypeY800));
}

TEST_F(Scene, TheColourChartHasARedCornerAndAGreyRamp) {
    const auto pixels = frameOf("formats = [\"RGB24 (640x480)\"]\n", subtypeRGB24);
    const auto at = [&](int row, int column) {
        const auto place = static_cast<std::size_t>(((479 - row) * 640 + column) * 3);
        return std::vector<int>{pixels[place], pixels[place + 1], pixels[place + 2]};
    };
    EXPECT_EQ((std::vector<int>{0, 0, 255}), at(0, 0));
    EXPECT_EQ((std::vector<int>{0, 0, 255}), at(79, 79));
    EXPECT_EQ((std::vector<int>{64, 52, 46}), at(0, 639));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), at(380, 10));
    EXPECT_EQ((std::vector<int>{255, 255, 255}), at(380, 630));
    EXPECT_EQ((std::vector<int>{244, 239, 236}), at(12, 235));  // the bar of the T
}

TEST_F(Scene, FlatGradientAndNoiseAreWhatTheySay) {
    EXPECT_EQ(std::vector<std::uint8_t>(12, 77),
              frameOf("formats = [\"Y800 (4x3)\"]\nscene = { pattern = \"flat\", value = 77 }\n",
                      subtypeY800));
    EXPECT_EQ((std::vector<std::uint8_t>{0, 64, 128, 192}),
              frameOf("formats = [\"Y800 (4x1)\"]\nscene = \"gradient\"\n", subtypeY800));
    const std::string noise =
        "formats = [\"Y800 (16x16)\"]\nscene = { pattern = \"noise\", seed = ";
    const auto first = frameOf(noise + "1 }\n", subtypeY800);
    EXPECT_EQ(first, frameOf(noise + "1 }\n", subtypeY800));
    EXPECT_NE(first, frameOf(noise + "2 }\n", subtypeY800));
    EXPECT_NE(first[0], first[1]);
}

class Picture : public CRigTest {
protected:
    // The grey that a flat scene of 100 shows after an item's value was set.
    int greyWith(const std::string& item, LONG value) {
        load(
            "[[camera]]\nname = \"A\"\nformats = [\"Y800 (8x1)\"]\n"
            "scene = { pattern = \"flat\", value = 100 }\n[[camera.item]]\nname = \"" +
            item + "\"\nValue.range = { min = 0, max = 100, value = 50 }\n");
        DShowLib::Grabber grabber;
        CMemory listener;
        EXPECT_TRUE(grabber.addListener(&listener, 0xFFFFFFFF));
        EXPECT_TRUE(open(grabber, 0));
        EXPECT_TRUE(grabber.setSinkType(sinkFor(subtypeY800)));
        EXPECT_TRUE(grabber.startLive(false));
        EXPECT_EQ(1, virtualCamerasDeliverFrame("A"));
        EXPECT_EQ(100, listener.pixels.at(0));
        DShowLib::smart_com<DShowLib::IVCDPropertyItem> found;
        EXPECT_EQ(S_OK, grabber.getAvailableVCDProperties()->getItem(1, found.put()));
        DShowLib::smart_com<DShowLib::IVCDPropertyElement> element;
        EXPECT_EQ(S_OK, found->getItem(1, element.put()));
        DShowLib::smart_com<DShowLib::IVCDRangeProperty> range;
        EXPECT_EQ(S_OK, element->QueryInterface(DShowLib::IID_IVCDRangeProperty,
                                                reinterpret_cast<void**>(range.put())));
        EXPECT_EQ(S_OK, range->setValue(value));
        EXPECT_EQ(1, virtualCamerasDeliverFrame("A"));
        return listener.pixels.at(0);
    }
};

TEST_F(Picture, ValuesActOnTheLivePicture) {
    EXPECT_EQ(126, greyWith("Brightness", 60));  // a tenth of 255 more
    EXPECT_EQ(0, greyWith("Brightness", 0));
    EXPECT_EQ(72, greyWith("Contrast", 100));  // twice as far from 128
    EXPECT_EQ(255, greyWith("Gain", 100));     // 2.8 times
    EXPECT_EQ(35, greyWith("Gain", 0));
    EXPECT_EQ(195, greyWith("Exposure", 62));  // 2 to the power of 0.96
    EXPECT_EQ(100, greyWith("Hue", 100));
}

}  // namespace
}  // namespace camera_tests
