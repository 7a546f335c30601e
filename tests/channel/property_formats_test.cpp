// SPDX-License-Identifier: MIT
// The video format by name, the list of formats, and each format by its index.
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyVideoFormat = CPropertyTest;
using PropertyVideoFormats = CPropertyTest;
using PropertyVideoFormatAt = CPropertyTest;

const std::string three = camera(R"toml(
formats = ["Y800 (640x480)", "Y800 (320x240)", "RGB32 (640x480)"]
)toml");

// A format list whose narrow names are `names`.
std::string formats(const std::vector<std::string>& names) {
    std::string list = "formats = [";
    for (const std::string& name : names) {
        list += "{ name = \"" + name + "\", width = 640, height = 480 }, ";
    }
    return camera(list + "]\n");
}

TEST_F(PropertyVideoFormat, ReadsTheCurrentOne) {
    CPropertyHost host(three);
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (320x240)"));
}

TEST_F(PropertyVideoFormat, IsChosenByName) {
    CPropertyHost host(three);
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480)"), accepted());
    EXPECT_EQ(host.get("videoformat"), accepted("RGB32 (640x480)"));
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setVideoFormat(RGB32 (640x480))"));
}

TEST_F(PropertyVideoFormat, IsComparedExactly) {
    CPropertyHost host(three);
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", "rgb32 (640x480)"),
              refused("Unknown video format \"rgb32 (640x480)\"."));
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480) "),
              refused("Unknown video format \"RGB32 (640x480) \"."));
    EXPECT_EQ(host.set("videoformat", "RGB32"), refused("Unknown video format \"RGB32\"."));
    EXPECT_EQ(host.set("videoformat", ""), refused("Unknown video format \"\"."));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (320x240)"));
}

TEST_F(PropertyVideoFormat, IsNotSetWhileLive) {
    CPropertyHost host(three);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    for (const char* name : {"RGB32 (640x480)", "No such format"}) {
        EXPECT_EQ(host.set("videoformat", name),
                  refused("Can not set video format, while live video is running."));
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (320x240)"));
}

TEST_F(PropertyVideoFormat, IsReadNarrowAndComparedWide) {
    CPropertyHost host(camera(R"toml(
formats = [{ name = "Y800 (640x480)", text = "Graustufen Größe VGA" }]
)toml"));
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.get("videoformats"), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.get("videoformat_0"), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.choice("videoformat", 0), accepted("Y800 (640x480)"));
    EXPECT_EQ(host.set("videoformat", "Y800 (640x480)"),
              refused("Unknown video format \"Y800 (640x480)\"."));
    EXPECT_EQ(host.set("videoformat", "Graustufen Größe VGA"), accepted());
}

TEST_F(PropertyVideoFormat, IsTheLastOfSeveralWithOneName) {
    CPropertyHost host(camera(R"toml(
formats = [{ name = "Y800 a", text = "Twin", width = 100, height = 50 },
           { name = "Y800 b", text = "Other", width = 200, height = 60 },
           { name = "Y800 c", text = "Twin", width = 300, height = 70 }]
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", "Twin"), accepted());
    EXPECT_THAT(host.changes(),
                ElementsAre("Grabber::setVideoFormat(Y800 a)", "Grabber::setVideoFormat(Y800 c)"));
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 c"));
}

TEST_F(PropertyVideoFormat, IgnoresWhatTheDeviceSaysToTheChange) {
    CPropertyHost host(three);
    refuseCall("Grabber::setVideoFormat");
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480)"), accepted());
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (320x240)"));
}

TEST_F(PropertyVideoFormat, IsUnknownWhereThereAreNone) {
    CPropertyHost host(three);
    host.forgetCalls();
    refuseCall("Grabber::getAvailableVideoFormats_");
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480)"),
              refused("Unknown video format \"RGB32 (640x480)\"."));
    emptyCall("Grabber::getAvailableVideoFormats_");
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480)"),
              refused("Unknown video format \"RGB32 (640x480)\"."));
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertyVideoFormat, CutsTheRefusalOfALongText) {
    CPropertyHost host(three);
    EXPECT_EQ(host.set("videoformat", std::string(300, 'x')),
              refused("Unknown video format \"" + std::string(233, 'x')));
}

TEST_F(PropertyVideoFormat, CutsALongNameByBytes) {
    CPropertyHost host(formats({std::string(254, 'x') + "ÄÖ"}));
    EXPECT_EQ(host.get("videoformat"), accepted(std::string(254, 'x') + "\xC3"));
    EXPECT_EQ(host.get("videoformats"), accepted(std::string(254, 'x') + "\xC3"));
    EXPECT_EQ(host.get("videoformat_0"), accepted(std::string(254, 'x') + "\xC3"));
}

TEST_F(PropertyVideoFormat, OfLongNamesIsStillChosenByTheWholeName) {
    const std::string first = std::string(300, 'x') + "1";
    const std::string second = std::string(300, 'x') + "2";
    CPropertyHost host(formats({first, second}));
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", second), accepted());
    EXPECT_EQ(host.calls({"Grabber::setVideoFormat"}).size(), 1U);
}

TEST_F(PropertyVideoFormats, AreJoinedByCommasInTheListsOrder) {
    CPropertyHost host(three);
    EXPECT_EQ(host.get("videoformats"), accepted("Y800 (640x480),Y800 (320x240),RGB32 (640x480)"));
}

TEST_F(PropertyVideoFormats, AreAskedForAfreshAtEveryCall) {
    CPropertyHost host(three);
    refuseCall("Grabber::getAvailableVideoFormats_");
    EXPECT_EQ(host.get("videoformats"), accepted(""));
    emptyCall("Grabber::getAvailableVideoFormats_");
    EXPECT_EQ(host.get("videoformats"), accepted(""));
    EXPECT_EQ(host.get("videoformats"), accepted("Y800 (640x480),Y800 (320x240),RGB32 (640x480)"));
}

TEST_F(PropertyVideoFormats, StopGrowingAt200Characters) {
    // 199 characters take one more name, 200 do not.
    const std::string x99(99, 'x');
    CPropertyHost below(formats({x99, x99, "last"}));
    EXPECT_EQ(below.get("videoformats"), accepted(x99 + "," + x99 + ",last"));
    const std::string x100(100, 'x');
    CPropertyHost at(formats({x99, x100, "last"}));
    EXPECT_EQ(at.get("videoformats"), accepted(x99 + "," + x100));
}

TEST_F(PropertyVideoFormats, SkipEveryNamePast200CharactersAlsoAShortOne) {
    const std::string x150(150, 'x');
    const std::string y60(60, 'y');
    CPropertyHost host(formats({x150, y60, "a", "b", "c"}));
    EXPECT_EQ(host.get("videoformats"), accepted(x150 + "," + y60));
}

TEST_F(PropertyVideoFormats, AreCutAtTheBuffersEnd) {
    const std::string x150(150, 'x');
    const std::string y150(150, 'y');
    CPropertyHost host(formats({x150, y150, "z"}));
    EXPECT_EQ(host.get("videoformats"), accepted(x150 + "," + std::string(104, 'y')));
}

TEST_F(PropertyVideoFormats, AreReadOnly) {
    CPropertyHost host(three);
    host.forgetCalls();
    for (const char* key : {"videoformats", "videoformat_0", "videoformat_2"}) {
        EXPECT_EQ(host.set(key, "RGB32 (640x480)"), refused("This is a read only property."));
    }
    EXPECT_EQ(host.callCount(), 0U);
}

TEST_F(PropertyVideoFormatAt, ReadsTheFormatOfItsIndex) {
    CPropertyHost host(camera(R"toml(
formats = ["Y800 (1x1)", "Y800 (2x2)", "Y800 (3x3)", "Y800 (4x4)"]
)toml"));
    EXPECT_EQ(host.get("videoformat_0"), accepted("Y800 (1x1)"));
    EXPECT_EQ(host.get("videoformat_3"), accepted("Y800 (4x4)"));
}

TEST_F(PropertyVideoFormatAt, IsEmptyPastTheList) {
    CPropertyHost host(camera(R"toml(
current_norm = "PAL"
[[camera.norm]]
name = "PAL"
formats = ["Y800 (1x1)", "Y800 (2x2)"]
[[camera.norm]]
name = "NTSC"
formats = ["Y800 (3x3)"]
)toml"));
    ASSERT_EQ(host.set("videonorm", "NTSC"), accepted());
    EXPECT_EQ(host.get("videoformat_0"), accepted("Y800 (3x3)"));
    EXPECT_EQ(host.get("videoformat_1"), accepted(""));
    refuseCall("Grabber::getAvailableVideoFormats_");
    EXPECT_EQ(host.get("videoformat_0"), accepted(""));
}

TEST_F(PropertyVideoFormatAt, FindsItsIndexFromTheThirteenthCharacterOfItsName) {
    COpenGrabber grabber(three);
    const auto reads = [&grabber](const char* name) {
        CPropertyVideoFormatAt property(name, grabber.get());
        CHostText message;
        CHostText value;
        EXPECT_EQ(property.getValue(message, value), 0);
        EXPECT_TRUE(message.isUntouched());
        return value.text();
    };
    EXPECT_EQ(reads("videoformat_1"), "Y800 (320x240)");
    EXPECT_EQ(reads("123456789012"
                    "2"),
              "RGB32 (640x480)");
    EXPECT_EQ(reads("videoformat_2nd"), "RGB32 (640x480)");
    EXPECT_EQ(reads("videoformat_x"), "Y800 (640x480)");
    EXPECT_EQ(reads("videoformat_"), "Y800 (640x480)");
    EXPECT_EQ(reads("short"), "Y800 (640x480)");
    EXPECT_EQ(reads("videoformat_3"), "");
    EXPECT_EQ(reads("videoformat_-1"), "");
    EXPECT_EQ(reads("videoformat_99999999999"), "");
}

TEST_F(PropertyVideoFormat, RaisesItsFlagOnlyForAFormatThatWasFound) {
    COpenGrabber grabber(three);
    CPropertyVideoFormat property("Video Format", grabber.get());
    CHostText message;
    EXPECT_EQ(property.setValue(message, "other"), 1);
    EXPECT_FALSE(property.isChanged());
    EXPECT_EQ(property.setValue(message, "Y800 (640x480)"), 0);
    EXPECT_TRUE(property.isChanged());
}

}  // namespace
}  // namespace property_tests
