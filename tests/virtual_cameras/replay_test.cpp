// SPDX-License-Identifier: MIT
// The scene of the user's own pictures.
#include <filesystem>
#include <fstream>
#include <random>

#include "tests/virtual_cameras/camera_rig.h"

namespace camera_tests {
namespace {

namespace fs = std::filesystem;

// A PNG of three by two pixels: red, green, blue; black, white and a grey of 90.
constexpr unsigned char pngBytes[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52,
    0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x02, 0x08, 0x02, 0x00, 0x00, 0x00, 0x12, 0x16, 0xF1,
    0x4D, 0x00, 0x00, 0x00, 0x16, 0x49, 0x44, 0x41, 0x54, 0x78, 0xDA, 0x63, 0xF8, 0xCF, 0xC0, 0xC0,
    0x00, 0xC3, 0x0C, 0xFF, 0xFF, 0xFF, 0x8F, 0x8A, 0x8A, 0x02, 0x00, 0x3D, 0xF4, 0x07, 0x09, 0x4D,
    0xB5, 0x4D, 0xDA, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

class Replay : public CRigTest {
protected:
    void SetUp() override {
        CRigTest::SetUp();
        // Other builds run the same tests at the same time.
        m_folder = fs::temp_directory_path() / ("film_" + std::to_string(std::random_device()()));
        fs::create_directories(m_folder);
    }
    void TearDown() override {
        fs::remove_all(m_folder);
        CRigTest::TearDown();
    }

    std::string file(const std::string& name, const std::string& bytes) const {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
        return path(name);
    }
    std::string path(const std::string& name) const { return (m_folder / name).generic_string(); }
    static std::string png() { return {std::begin(pngBytes), std::end(pngBytes)}; }
    // One byte a pixel.
    static std::string pgm(const std::string& size, const std::string& pixels) {
        return "P5\n" + size + "\n255\n" + pixels;
    }
    static std::string rig(const std::string& format, const std::string& scene) {
        return "[[camera]]\nname = \"A\"\nformats = [\"" + format +
               "\"]\nscene = { pattern = \"replay\", " + scene + " }\n";
    }
    // The last of so many frames.
    static std::vector<std::uint8_t> frameOf(const std::string& toml, const GUID& subtype,
                                             int count = 1) {
        load(toml);
        DShowLib::Grabber grabber;
        CMemory listener;
        EXPECT_TRUE(grabber.addListener(&listener, 0xFFFFFFFF));
        EXPECT_TRUE(open(grabber, 0));
        EXPECT_TRUE(grabber.setSinkType(sinkFor(subtype)));
        EXPECT_TRUE(grabber.startLive(false)) << errorOf(grabber);
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(1, virtualCamerasDeliverFrame("A"));
        }
        grabber.stopLive();
        return listener.pixels;
    }
    std::vector<std::uint8_t> grey(const std::string& format, const std::string& scene,
                                   int count = 1) const {
        return frameOf(rig("Y800 " + format, scene), subtypeY800, count);
    }
    static std::string errorOf(const std::string& toml) {
        char message[512] = "";
        EXPECT_EQ(1, virtualCamerasLoadRig(toml.c_str(), message, sizeof(message)));
        return message;
    }
    using CRigTest::errorOf;
    static std::string pathKey(const std::string& path) { return "path = \"" + path + "\""; }
    using Bytes = std::vector<std::uint8_t>;

    fs::path m_folder;
};

TEST_F(Replay, ShowsThePixelsOfAPng) {
    const std::string scene = pathKey(file("a.png", png()));
    EXPECT_EQ((Bytes{0, 0, 0, 255, 255, 255, 90, 90, 90,  // the bottom row first
                     0, 0, 255, 0, 255, 0, 255, 0, 0}),
              frameOf(rig("RGB24 (3x2)", scene), subtypeRGB24));
    EXPECT_EQ((Bytes{76, 150, 29, 0, 255, 90}), grey("(3x2)", scene));
}

TEST_F(Replay, ShowsPgmAndPpm) {
    EXPECT_EQ((Bytes{1, 2, 3, 4}), grey("(2x2)", pathKey(file("a.pgm", pgm("2 2", "\1\2\3\4")))));
    EXPECT_EQ((Bytes{30, 20, 10}),
              frameOf(rig("RGB24 (1x1)", pathKey(file("a.ppm", "P6\n1 1\n255\n\x0A\x14\x1E"))),
                      subtypeRGB24));
}

TEST_F(Replay, AColourCameraSeesThePictureThroughItsMosaic) {
    const std::string scene = pathKey(file("a.ppm", "P6\n1 1\n255\n\x0A\x14\x1E"));
    EXPECT_EQ((Bytes{20, 30, 10, 20}),
              frameOf(rig("Y800 (2x2)", scene) + "colour = true\n", subtypeY800));
}

TEST_F(Replay, ScalesToTheFrameByTheNearestPixel) {
    const std::string scene = pathKey(file("a.pgm", pgm("2 2", "\1\2\3\4")));
    EXPECT_EQ((Bytes{1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 4, 4, 3, 3, 4, 4}), grey("(4x4)", scene));
    EXPECT_EQ((Bytes{4}), grey("(1x1)", scene));
    EXPECT_EQ((Bytes{1, 1, 2, 3, 3, 4}), grey("(3x2)", scene + ", fit = \"scale\""));
}

TEST_F(Replay, CropsAroundTheMiddle) {
    const std::string scene =
        pathKey(file("a.pgm", pgm("4 4", "\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\xD\xE\xF\x10"))) +
        ", fit = \"crop\"";
    EXPECT_EQ((Bytes{6, 7, 10, 11}), grey("(2x2)", scene));
    EXPECT_EQ((Bytes{0, 5, 6, 7, 8, 0, 0, 9, 10, 11, 12, 0}), grey("(6x2)", scene));
}

TEST_F(Replay, AFolderIsAFilmInTheOrderOfNames) {
    file("b.pgm", pgm("1 1", "\2"));
    file("a.PGM", pgm("1 1", "\1"));
    file("c.pgm", pgm("2 1", "\3\3"));
    file("notes.txt", "no picture");
    const std::string scene = pathKey(path(""));
    EXPECT_EQ((Bytes{1}), grey("(1x1)", scene, 1));
    EXPECT_EQ((Bytes{2}), grey("(1x1)", scene, 2));
    EXPECT_EQ((Bytes{3}), grey("(1x1)", scene, 3));
    EXPECT_EQ((Bytes{1}), grey("(1x1)", scene, 4));
}

TEST_F(Replay, WhatIsWrongIsToldWithItsPlace) {
    fs::create_directories(m_folder / "empty");
    file("broken.png", png().substr(0, 40));
    EXPECT_EQ("4:38: \"" + path("no.png") + "\" is no file and no folder",
              errorOf(rig("Y800 (1x1)", pathKey(path("no.png")))));
    EXPECT_EQ(
        "4:38: \"" + path("empty") + "\" holds no picture; PNG, PGM and PPM files are pictures",
        errorOf(rig("Y800 (1x1)", pathKey(path("empty")))));
    EXPECT_EQ("4:38: \"" + path("broken.png") +
                  "\" is no PNG, PGM or PPM picture of at most 8192 by 8192 pixels",
              errorOf(rig("Y800 (1x1)", pathKey(path("broken.png")))));
    EXPECT_EQ("4:38: \"" + m_folder.generic_string() +
                  "\" is no PNG, PGM or PPM picture of at most 8192 by 8192 pixels: broken.png",
              errorOf(rig("Y800 (1x1)", pathKey(m_folder.generic_string()))));
}

TEST_F(Replay, NeedsAPath) {
    EXPECT_EQ("3:9: scene \"replay\" needs a table with \"pattern\" and \"path\"",
              errorOf("[[camera]]\nname = \"A\"\nscene = \"replay\"\n"));
    EXPECT_EQ("3:9: scene \"replay\" needs \"path\"",
              errorOf("[[camera]]\nname = \"A\"\nscene = { pattern = \"replay\" }\n"));
    EXPECT_EQ("3:32: unknown key \"path\" in scene",
              errorOf("[[camera]]\nname = \"A\"\nscene = { pattern = \"counter\", path = \"a\" }\n")
                  .substr(0, 34));
    EXPECT_EQ(
        "4:" + std::to_string(path("a.pgm").size() + 48) + ": fit must be one of: scale, crop",
        errorOf(rig("Y800 (1x1)", pathKey(file("a.pgm", pgm("1 1", "\1"))) + ", fit = \"fill\"")));
    char message[256] = "";
    EXPECT_EQ(1, virtualCamerasChooseRig("standard:replay", message, sizeof(message)));
    EXPECT_STREQ("1:10: scene \"replay\" needs a rig file that names its pictures", message);
}

}  // namespace
}  // namespace camera_tests
