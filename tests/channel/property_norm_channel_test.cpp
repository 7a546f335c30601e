// SPDX-License-Identifier: MIT
// Video norms and input channels by name, and their lists.
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyVideoNorm = CPropertyTest;
using PropertyVideoNorms = CPropertyTest;
using PropertyInputChannel = CPropertyTest;
using PropertyInputChannels = CPropertyTest;

const std::string norms = camera(R"toml(
current_norm = "PAL_B"
[[camera.norm]]
name = "PAL_B"
formats = ["Y800 (768x576)", "RGB32 (768x576)"]
[[camera.norm]]
name = "NTSC_M"
formats = ["Y800 (640x480)", "UYVY (640x480)", "RGB32 (320x240)"]
[[camera.norm]]
name = "Void"
formats = []
[[camera.norm]]
name = "Nothing"
)toml");

const std::string channels = camera(R"toml(
formats = ["Y800 (640x480)"]
channel = "Composite"
channels = ["Composite", { name = "S-Video", text = "Süd-Video" }, "Tuner"]
)toml");

TEST_F(PropertyVideoNorm, ReadsTheCurrentOne) {
    CPropertyHost host(norms);
    EXPECT_EQ(host.get("videonorm"), accepted("PAL_B"));
}

TEST_F(PropertyVideoNorm, ChoosesTheLastFormatOfTheNewNorm) {
    CPropertyHost host(norms);
    host.forgetCalls();
    EXPECT_EQ(host.set("videonorm", "NTSC_M"), accepted());
    EXPECT_EQ(host.get("videonorm"), accepted("NTSC_M"));
    EXPECT_EQ(host.get("videoformat"), accepted("RGB32 (320x240)"));
    EXPECT_EQ(host.get("videoformats"), accepted("Y800 (640x480),UYVY (640x480),RGB32 (320x240)"));
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setVideoNorm(NTSC_M)",
                                            "Grabber::setVideoFormat(RGB32 (320x240))"));
}

TEST_F(PropertyVideoNorm, AsksForTheNewNormsFormatsAfterTheChange) {
    CPropertyHost host(norms);
    host.forgetCalls();
    ASSERT_EQ(host.set("videonorm", "NTSC_M"), accepted());
    EXPECT_THAT(host.calls({"Grabber::isLive", "Grabber::getAvailableVideoNorms_",
                            "Grabber::setVideoNorm", "Grabber::getVideoNorm",
                            "Grabber::getAvailableVideoFormats_", "Grabber::setVideoFormat"}),
                ElementsAre("Grabber::isLive()", "Grabber::getAvailableVideoNorms_()",
                            "Grabber::setVideoNorm(NTSC_M)", "Grabber::getVideoNorm()",
                            "Grabber::getAvailableVideoFormats_(NTSC_M)",
                            "Grabber::setVideoFormat(RGB32 (320x240))"));
}

TEST_F(PropertyVideoNorm, BuildsNoNewSink) {
    CPropertyHost host(norms);
    host.forgetCalls();
    ASSERT_EQ(host.set("videonorm", "NTSC_M"), accepted());
    EXPECT_THAT(host.calls({"FrameHandlerSink::create", "Grabber::setSinkType"}), IsEmpty());
}

TEST_F(PropertyVideoNorm, ChoosesTheLastFormatAgainWhenSetToItself) {
    CPropertyHost host(norms);
    ASSERT_EQ(host.get("videoformat"), accepted("Y800 (768x576)"));
    EXPECT_EQ(host.set("videonorm", "PAL_B"), accepted());
    EXPECT_EQ(host.get("videoformat"), accepted("RGB32 (768x576)"));
}

TEST_F(PropertyVideoNorm, IsComparedExactly) {
    CPropertyHost host(norms);
    host.forgetCalls();
    EXPECT_EQ(host.set("videonorm", "ntsc_m"), refused("Unknown video norm \"ntsc_m\"."));
    EXPECT_EQ(host.set("videonorm", "NTSC_M "), refused("Unknown video norm \"NTSC_M \"."));
    EXPECT_EQ(host.set("videonorm", "NTSC"), refused("Unknown video norm \"NTSC\"."));
    EXPECT_EQ(host.set("videonorm", ""), refused("Unknown video norm \"\"."));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videonorm"), accepted("PAL_B"));
}

TEST_F(PropertyVideoNorm, IsNotSetWhileLive) {
    CPropertyHost host(norms);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    for (const char* name : {"NTSC_M", "No such norm"}) {
        EXPECT_EQ(host.set("videonorm", name),
                  refused("Can not set video norm, while live video is running."));
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videonorm"), accepted("PAL_B"));
}

TEST_F(PropertyVideoNorm, IsNotSupportedWithoutAList) {
    CPropertyHost host(norms);
    host.forgetCalls();
    refuseCall("Grabber::getAvailableVideoNorms_");
    EXPECT_EQ(host.set("videonorm", "NTSC_M"), refused("Video noms are not supported."));
    emptyCall("Grabber::getAvailableVideoNorms_");
    EXPECT_EQ(host.set("videonorm", "NTSC_M"), refused("Video noms are not supported."));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("videonorm"), accepted("PAL_B"));
}

TEST_F(PropertyVideoNorm, WithoutFormatsIsChangedAndThenUnknownToTheHost) {
    for (const char* empty : {"Void", "Nothing"}) {
        CPropertyHost host(norms);
        host.forgetCalls();
        EXPECT_EQ(host.set("videonorm", empty), refused("Unknown property \"videonorm\""));
        EXPECT_THAT(host.changes(),
                    ElementsAre("Grabber::setVideoNorm(" + std::string(empty) + ")"));
        EXPECT_EQ(host.get("videonorm"), accepted(empty));
    }
}

TEST_F(PropertyVideoNorm, WithoutFormatsThrowsOutOfRange) {
    COpenGrabber grabber(norms);
    CPropertyVideoNorm property("Video Norm", grabber.get());
    CHostText message;
    EXPECT_EQ(outOfRangeText([&] { property.setValue(message, "Void"); }),
              "invalid vector<T> subscript");
    EXPECT_TRUE(message.isUntouched());
    EXPECT_FALSE(property.isChanged());
}

TEST_F(PropertyVideoNorm, IsSetForEveryOneOfItsName) {
    CPropertyHost host(camera(R"toml(
[[camera.norm]]
name = "Twin"
formats = ["Y800 (100x50)"]
[[camera.norm]]
name = "Other"
formats = ["Y800 (200x60)"]
[[camera.norm]]
name = "Twin"
formats = ["Y800 (300x70)"]
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.set("videonorm", "Twin"), accepted());
    EXPECT_EQ(host.calls({"Grabber::setVideoNorm"}).size(), 2U);
    EXPECT_EQ(host.get("videoformat"), accepted("Y800 (300x70)"));
}

TEST_F(PropertyVideoNorm, IgnoresWhatTheDeviceSaysToTheChange) {
    CPropertyHost host(norms);
    refuseCall("Grabber::setVideoNorm");
    refuseCall("Grabber::setVideoFormat");
    EXPECT_EQ(host.set("videonorm", "NTSC_M"), accepted());
    EXPECT_EQ(host.get("videonorm"), accepted("PAL_B"));
}

TEST_F(PropertyVideoNorm, CutsTheRefusalOfALongText) {
    CPropertyHost host(norms);
    EXPECT_EQ(host.set("videonorm", std::string(300, 'x')),
              refused("Unknown video norm \"" + std::string(235, 'x')));
}

TEST_F(PropertyVideoNorm, KeepsItsFlagDown) {
    COpenGrabber grabber(norms);
    CPropertyVideoNorm property("Video Norm", grabber.get());
    CHostText message;
    EXPECT_EQ(property.setValue(message, "NTSC_M"), 0);
    EXPECT_FALSE(property.isChanged());
}

TEST_F(PropertyVideoNorms, AreJoinedByCommas) {
    CPropertyHost host(norms);
    EXPECT_EQ(host.get("videonorms"), accepted("PAL_B,NTSC_M,Void,Nothing"));
}

TEST_F(PropertyVideoNorms, AreEmptyWithoutAList) {
    CPropertyHost host(norms);
    refuseCall("Grabber::getAvailableVideoNorms_");
    EXPECT_EQ(host.get("videonorms"), accepted(""));
    emptyCall("Grabber::getAvailableVideoNorms_");
    EXPECT_EQ(host.get("videonorms"), accepted(""));
}

TEST_F(PropertyVideoNorms, GrowToTheBuffersEnd) {
    const std::string x210(210, 'x');
    std::string rig;
    for (const std::string& name : {x210, std::string("late"), std::string(60, 'y')}) {
        rig += "[[camera.norm]]\nname = \"" + name + "\"\nformats = [\"Y800 (8x8)\"]\n";
    }
    CPropertyHost host(camera(rig));
    EXPECT_EQ(host.get("videonorms"), accepted(x210 + ",late," + std::string(39, 'y')));
}

TEST_F(PropertyVideoNorms, AreReadOnly) {
    CPropertyHost host(norms);
    host.forgetCalls();
    EXPECT_EQ(host.set("videonorms", "NTSC_M"), refused("This is a read only property."));
    EXPECT_EQ(host.callCount(), 0U);
}

// For a device without norms the registry makes no setting; the class still answers.
TEST_F(PropertyVideoNorms, OfADeviceWithoutAnyAreEmptyAndNotSupported) {
    COpenGrabber grabber(channels);
    CPropertyVideoNorms list("Video Norms", grabber.get());
    CPropertyVideoNorm norm("Video Norm", grabber.get());
    CHostText message;
    CHostText value;
    EXPECT_EQ(list.getValue(message, value), 0);
    EXPECT_EQ(value.text(), "");
    EXPECT_TRUE(message.isUntouched());
    EXPECT_EQ(norm.setValue(message, "PAL_B"), 1);
    EXPECT_EQ(message.text(), "Video noms are not supported.");
}

TEST_F(PropertyInputChannel, ReadsTheCurrentOne) {
    CPropertyHost host(channels);
    EXPECT_EQ(host.get("inputchannel"), accepted("Composite"));
}

TEST_F(PropertyInputChannel, IsReadNarrowAndComparedWide) {
    CPropertyHost host(channels);
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannel", "S-Video"), refused("Unknown input channel \"S-Video\"."));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.set("inputchannel", "Süd-Video"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setInputChannel(S-Video)"));
    EXPECT_EQ(host.get("inputchannel"), accepted("S-Video"));
}

TEST_F(PropertyInputChannel, CutsALongNameByBytes) {
    const std::string name = std::string(254, 'x') + "ÄÖ";
    CPropertyHost host(camera("formats = [\"Y800 (640x480)\"]\nchannels = [\"" + name + "\"]\n"));
    EXPECT_EQ(host.get("inputchannel"), accepted(std::string(254, 'x') + "\xC3"));
}

TEST_F(PropertyInputChannel, IsComparedExactly) {
    CPropertyHost host(channels);
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannel", "tuner"), refused("Unknown input channel \"tuner\"."));
    EXPECT_EQ(host.set("inputchannel", "Tuner "), refused("Unknown input channel \"Tuner \"."));
    EXPECT_EQ(host.set("inputchannel", ""), refused("Unknown input channel \"\"."));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("inputchannel"), accepted("Composite"));
}

TEST_F(PropertyInputChannel, MayChangeWhileLive) {
    CPropertyHost host(channels);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannel", "Tuner"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setInputChannel(Tuner)"));
    EXPECT_EQ(host.get("inputchannel"), accepted("Tuner"));
}

TEST_F(PropertyInputChannel, BuildsNoNewSink) {
    CPropertyHost host(channels);
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannel", "Tuner"), accepted());
    EXPECT_THAT(host.calls({"Grabber::setSinkType"}), IsEmpty());
}

TEST_F(PropertyInputChannel, IsNotSupportedWithoutAList) {
    CPropertyHost host(channels);
    host.forgetCalls();
    refuseCall("Grabber::getAvailableInputChannels_");
    EXPECT_EQ(host.set("inputchannel", "Tuner"), refused("Input channels are not supported."));
    emptyCall("Grabber::getAvailableInputChannels_");
    EXPECT_EQ(host.set("inputchannel", "Tuner"), refused("Input channels are not supported."));
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertyInputChannel, IsSetForEveryOneOfItsName) {
    CPropertyHost host(camera(R"toml(
channels = [{ name = "a", text = "Twin" }, "b", { name = "c", text = "Twin" }]
)toml"));
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannel", "Twin"), accepted());
    EXPECT_THAT(host.changes(),
                ElementsAre("Grabber::setInputChannel(a)", "Grabber::setInputChannel(c)"));
    EXPECT_EQ(host.get("inputchannel"), accepted("c"));
}

TEST_F(PropertyInputChannel, IgnoresWhatTheDeviceSaysToTheChange) {
    CPropertyHost host(channels);
    refuseCall("Grabber::setInputChannel");
    EXPECT_EQ(host.set("inputchannel", "Tuner"), accepted());
    EXPECT_EQ(host.get("inputchannel"), accepted("Composite"));
}

TEST_F(PropertyInputChannel, CutsTheRefusalOfALongText) {
    CPropertyHost host(channels);
    EXPECT_EQ(host.set("inputchannel", std::string(300, 'x')),
              refused("Unknown input channel \"" + std::string(232, 'x')));
}

TEST_F(PropertyInputChannels, AreJoinedByCommas) {
    CPropertyHost host(channels);
    EXPECT_EQ(host.get("inputchannels"), accepted("Composite,S-Video,Tuner"));
    refuseCall("Grabber::getAvailableInputChannels_");
    EXPECT_EQ(host.get("inputchannels"), accepted(""));
    emptyCall("Grabber::getAvailableInputChannels_");
    EXPECT_EQ(host.get("inputchannels"), accepted(""));
}

TEST_F(PropertyInputChannels, GrowToTheBuffersEnd) {
    const std::string x210(210, 'x');
    CPropertyHost host(
        camera("channels = [\"" + x210 + "\", \"late\", \"" + std::string(60, 'y') + "\"]\n"));
    EXPECT_EQ(host.get("inputchannels"), accepted(x210 + ",late," + std::string(39, 'y')));
}

TEST_F(PropertyInputChannels, AreReadOnly) {
    CPropertyHost host(channels);
    host.forgetCalls();
    EXPECT_EQ(host.set("inputchannels", "Tuner"), refused("This is a read only property."));
    EXPECT_EQ(host.callCount(), 0U);
}

}  // namespace
}  // namespace property_tests
