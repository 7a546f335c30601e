// SPDX-License-Identifier: MIT
// Reading and writing settings by key: how keys are matched, what the host hears,
// and when the frame sink is built again.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyGet = CPropertyTest;
using PropertySet = CPropertyTest;

const std::string simple = camera(R"toml(
formats = ["Y800 (640x480)", "Y800 (320x240)", "RGB32 (640x480)"]
framerates = [60.0, 30.0]
[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 10, value = 5 }
[[camera.item]]
name = "Binning Ä_1"
Value.switch = false
)toml");

const std::vector<std::string_view> sinkOperations = {"FrameHandlerSink::create",
                                                      "Grabber::setSinkType"};

std::size_t sinksBuilt(const CPropertyHost& host) {
    const std::vector<std::string> calls = host.calls(sinkOperations);
    EXPECT_EQ(calls.size() % 2, 0U);
    return calls.size() / 2;
}

TEST_F(PropertyGet, MatchesKeysAfterLoweringAndTrimmingTheEnd) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get("FRAMERATE"), accepted("60.000000"));
    EXPECT_EQ(host.get("FrameRate   "), accepted("60.000000"));
    EXPECT_EQ(host.get("GAIN Value RANGE "), accepted("5"));
}

TEST_F(PropertyGet, KeepsBlanksAtTheStartAndWithin) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get(" framerate"), refused("Unknown property \" framerate\""));
    EXPECT_EQ(host.get("frame rate"), refused("Unknown property \"frame rate\""));
    EXPECT_EQ(host.get("gain  value range"), refused("Unknown property \"gain  value range\""));
}

TEST_F(PropertyGet, TrimsBlanksOnly) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get("framerate\t"), refused("Unknown property \"framerate\t\""));
    EXPECT_EQ(host.get("framerate\n"), refused("Unknown property \"framerate\n\""));
    EXPECT_EQ(host.get("framerate\xC2\xA0"), refused("Unknown property \"framerate\xC2\xA0\""));
}

TEST_F(PropertyGet, LowersAsciiOnly) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get("BINNING Ä_1 VALUE SWITCH"), accepted("false"));
    EXPECT_EQ(host.get("binning ä_1 value switch"),
              refused("Unknown property \"binning ä_1 value switch\""));
}

TEST_F(PropertyGet, QuotesAnUnknownKeyAsTheHostGaveIt) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get("No Such KEY  "), refused("Unknown property \"No Such KEY  \""));
}

TEST_F(PropertyGet, KnowsNoEmptyKey) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get(""), refused("Unknown property \"\""));
    EXPECT_EQ(host.get("   "), refused("Unknown property \"   \""));
    EXPECT_EQ(host.get(static_cast<const char*>(nullptr)), refused("Unknown property \"\""));
}

TEST_F(PropertyGet, CutsTheMessageOfALongKey) {
    CPropertyHost host(simple);
    const std::string key(300, 'K');
    EXPECT_EQ(host.get(key), refused("Unknown property \"" + std::string(237, 'K')));
    EXPECT_EQ(host.get(key).message.size(), 255U);
    // 236 characters leave room for the closing quote.
    EXPECT_EQ(host.get(std::string(236, 'K')),
              refused("Unknown property \"" + std::string(236, 'K') + "\""));
}

TEST_F(PropertyGet, KnowsNoFormatPastTheList) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.get("videoformat_2"), accepted("RGB32 (640x480)"));
    EXPECT_EQ(host.get("videoformat_3"), refused("Unknown property \"videoformat_3\""));
}

TEST_F(PropertyGet, WorksWithoutBuffers) {
    CPropertyHost host(simple);
    CVideoChannel& channel = host.channel();
    for (const char* key :
         {"framerate", "videoformat", "videoformats", "videoformat_0", "pixelformat",
          "gain value range", "gain value range min", "binning Ä_1 value switch", "feature_1"}) {
        EXPECT_EQ(channel.GetPropertyValue(nullptr, key, nullptr), 0) << key;
    }
    EXPECT_EQ(channel.GetPropertyValue(nullptr, "other", nullptr), 1);
    EXPECT_EQ(channel.GetPropertyValue(nullptr, nullptr, nullptr), 1);
}

TEST_F(PropertySet, MatchesKeysAsGetDoes) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.set("GAIN VALUE RANGE  ", "7"), accepted());
    EXPECT_EQ(host.get("gain value range"), accepted("7"));
    EXPECT_EQ(host.set(" gain value range", "8"),
              refused("Unknown property \" gain value range\""));
    EXPECT_EQ(host.get("gain value range"), accepted("7"));
}

TEST_F(PropertySet, KnowsNoEmptyKey) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.set("", "1"), refused("Unknown property \"\""));
    EXPECT_EQ(host.set("  ", "1"), refused("Unknown property \"  \""));
    EXPECT_EQ(host.set(nullptr, "1"), refused("Unknown property \"\""));
}

TEST_F(PropertySet, CutsTheMessageOfALongKey) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.set(std::string(300, 'K'), "1"),
              refused("Unknown property \"" + std::string(237, 'K')));
}

TEST_F(PropertySet, ReadsNoTextAsTheEmptyText) {
    CPropertyHost host(simple);
    EXPECT_EQ(host.set("gain value range", nullptr), accepted());
    EXPECT_EQ(host.get("gain value range"), accepted("0"));
    EXPECT_EQ(host.set("pixelformat", nullptr),
              refused("Unsupported pixelformat:\"\". Valid formats are \"mono8\", \"raw8\" and "
                      "\"rgb24\"."));
    EXPECT_EQ(host.set("videoformat", nullptr), refused("Unknown video format \"\"."));
}

TEST_F(PropertySet, WorksWithoutAMessageBuffer) {
    CPropertyHost host(simple);
    CVideoChannel& channel = host.channel();
    EXPECT_EQ(channel.SetPropertyValue(nullptr, "gain value range", "7"), 0);
    EXPECT_EQ(host.get("gain value range"), accepted("7"));
    for (const char* key :
         {"framerate", "videoformat", "videoformats", "videoformat_0", "pixelformat",
          "gain value range min", "gain value range max", "feature_1", "other"}) {
        EXPECT_EQ(channel.SetPropertyValue(nullptr, key, "-1"), 1) << key;
    }
    EXPECT_EQ(channel.SetPropertyValue(nullptr, nullptr, nullptr), 1);
}

TEST_F(PropertySet, BuildsANewSinkAfterEverySetOfThePixelFormat) {
    CPropertyHost host(simple);
    host.forgetCalls();
    EXPECT_EQ(host.set("pixelformat", "rgb24"), accepted());
    EXPECT_EQ(sinksBuilt(host), 1U);
    // The flag stays up, also for a refused value.
    EXPECT_EQ(host.set("pixelformat", "purple").result, 1);
    EXPECT_EQ(sinksBuilt(host), 2U);
    EXPECT_EQ(host.set("pixelformat", "mono8"), accepted());
    EXPECT_EQ(sinksBuilt(host), 3U);
}

TEST_F(PropertySet, BuildsANewSinkAlsoForTheFirstRefusedPixelFormat) {
    CPropertyHost host(simple);
    host.forgetCalls();
    EXPECT_EQ(host.set("pixelformat", "purple").result, 1);
    EXPECT_EQ(sinksBuilt(host), 1U);
}

TEST_F(PropertySet, BuildsNoSinkForAPixelFormatRefusedWhileLive) {
    CPropertyHost host(simple);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("pixelformat", "rgb24").result, 1);
    EXPECT_EQ(sinksBuilt(host), 0U);
}

TEST_F(PropertySet, BuildsANewSinkWhileLiveOnceTheFlagIsUp) {
    CPropertyHost host(simple);
    ASSERT_EQ(host.set("pixelformat", "rgb24"), accepted());
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.setWithSinks("pixelformat", "mono8"),
              refused("Can not set pixelformat, while live video is running."));
    EXPECT_EQ(sinksBuilt(host), 1U);
    EXPECT_EQ(host.get("pixelformat"), accepted("RGB24"));
    // The grabber goes on with the sink that it runs on.
    EXPECT_EQ(virtualCamerasDeliverFrame(cameraId), 1);
    EXPECT_EQ(host.stop(), accepted());
}

TEST_F(PropertySet, BuildsANewSinkForAFoundFormatAndFromThenOn) {
    CPropertyHost host(simple);
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", "No such format").result, 1);
    EXPECT_EQ(sinksBuilt(host), 0U);
    EXPECT_EQ(host.set("videoformat", "RGB32 (640x480)"), accepted());
    EXPECT_EQ(sinksBuilt(host), 1U);
    EXPECT_EQ(host.set("videoformat", "No such format").result, 1);
    EXPECT_EQ(sinksBuilt(host), 2U);
}

TEST_F(PropertySet, BuildsNoSinkForSettingsThatNeedNone) {
    CPropertyHost host(simple);
    ASSERT_EQ(host.set("pixelformat", "rgb24"), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("gain value range", "7"), accepted());
    EXPECT_EQ(host.set("framerate", "30"), accepted());
    EXPECT_EQ(host.set("framerate", "1000").result, 1);
    EXPECT_EQ(host.set("gain value range", "1000").result, 1);
    EXPECT_EQ(host.set("binning Ä_1 value switch", "true"), accepted());
    EXPECT_EQ(host.set("videoformats", "x").result, 1);
    EXPECT_EQ(sinksBuilt(host), 0U);
}

TEST_F(PropertySet, SetsTheFormatBeforeTheNewSink) {
    CPropertyHost host(simple);
    host.forgetCalls();
    EXPECT_EQ(host.set("videoformat", "Y800 (320x240)"), accepted());
    const std::vector<std::string> calls =
        host.calls({"Grabber::setVideoFormat", "FrameHandlerSink::create",
                    "FrameHandlerSink::setSnapMode", "Grabber::setSinkType"});
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[0], "Grabber::setVideoFormat(Y800 (320x240))");
    EXPECT_EQ(calls[1].substr(0, 24), "FrameHandlerSink::create");
    EXPECT_EQ(calls[2], "FrameHandlerSink::setSnapMode(false)");
    EXPECT_EQ(calls[3].substr(0, 20), "Grabber::setSinkType");
}

TEST_F(PropertySet, IgnoresAFailedNewSink) {
    CPropertyHost host(simple);
    refuseCall("Grabber::setSinkType");
    EXPECT_EQ(host.setWithSinks("pixelformat", "rgb24"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("RGB24"));
    refuseCall("FrameHandlerSink::create");
    EXPECT_EQ(host.setWithSinks("pixelformat", "mono8"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("Mono8"));
}

TEST_F(PropertySet, AnswersUnknownPropertyWhenTheNewSinkThrows) {
    CPropertyHost host(simple);
    throwFromCall("FrameHandlerSink::create", "no memory");
    EXPECT_EQ(host.set("PixelFormat ", "rgb24"), refused("Unknown property \"PixelFormat \""));
    // The value itself was taken.
    EXPECT_EQ(host.get("pixelformat"), accepted("RGB24"));
}

TEST_F(PropertySet, AnswersUnknownPropertyWhenTheNewSinkThrowsAfterARefusal) {
    CPropertyHost host(simple);
    throwFromCall("Grabber::setSinkType", "no memory");
    EXPECT_EQ(host.setWithSinks("pixelformat", "purple"),
              refused("Unknown property \"pixelformat\""));
}

TEST_F(PropertySet, AnswersUnknownPropertyWhenTheSettingThrows) {
    CPropertyHost host(simple);
    failCall("IVCDRangeProperty::setValue");
    EXPECT_EQ(host.set("GAIN value range", "7"), refused("Unknown property \"GAIN value range\""));
    EXPECT_EQ(host.get("gain value range"), accepted("5"));
    throwFromCall("Grabber::setVideoFormat", "refused");
    EXPECT_EQ(host.set("videoformat", "Y800 (320x240)"),
              refused("Unknown property \"videoformat\""));
}

TEST_F(PropertyGet, LetsExceptionsThrough) {
    CPropertyHost host(simple);
    failCall("IVCDRangeProperty::getValue");
    EXPECT_EQ(thrownCode([&] { host.get("gain value range"); }), -2147024891);
    throwFromCall("Grabber::getFPS", "gone");
    EXPECT_THROW(host.get("framerate"), char*);
    EXPECT_EQ(host.get("gain value range"), accepted("5"));
}

TEST_F(PropertySet, SpeaksToTheDeviceOnlyForAKnownKey) {
    CPropertyHost host(simple);
    host.forgetCalls();
    EXPECT_EQ(host.set("other", "1").result, 1);
    EXPECT_EQ(host.get("other").result, 1);
    EXPECT_EQ(host.callCount(), 0U);
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertySet, WorksWhileLive) {
    CPropertyHost host(simple);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("gain value range", "7"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("IVCDRangeProperty::setValue(Gain,Value,7)"));
}

}  // namespace
}  // namespace property_tests
