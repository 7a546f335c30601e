// SPDX-License-Identifier: MIT
// The pixel type of the frames, as text.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::IsEmpty;

using PropertyPixelFormat = CPropertyTest;

const std::string grey = camera("formats = [\"Y800 (640x480)\"]\n");
const std::string colour = camera("formats = [\"Y800 (640x480)\", \"RGB32 (640x480)\"]\n");

constexpr const char* unsupportedPurple =
    "Unsupported pixelformat:\"purple\". Valid formats are \"mono8\", \"raw8\" and \"rgb24\".";

std::uint32_t pixelTypeOf(CPropertyHost& host) {
    ImageInfo image{};
    EXPECT_EQ(host.imageInfo(&image), done());
    return image.pixelType;
}

TEST_F(PropertyPixelFormat, StartsAsMono8ForAGreyCamera) {
    CPropertyHost host(grey);
    EXPECT_EQ(host.get("pixelformat"), accepted("Mono8"));
    EXPECT_EQ(pixelTypeOf(host), 0U);
}

TEST_F(PropertyPixelFormat, StartsAsRaw8ForACameraWithAnyOtherFormat) {
    CPropertyHost host(colour);
    EXPECT_EQ(host.get("pixelformat"), accepted("Raw8"));
    EXPECT_EQ(pixelTypeOf(host), 4U);
}

TEST_F(PropertyPixelFormat, IsSetWithoutRegardToCase) {
    CPropertyHost host(grey);
    EXPECT_EQ(host.set("pixelformat", "RgB24"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("RGB24"));
    EXPECT_EQ(pixelTypeOf(host), 7U);
    EXPECT_EQ(host.set("pixelformat", "Raw8"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("Raw8"));
    EXPECT_EQ(pixelTypeOf(host), 4U);
    EXPECT_EQ(host.set("pixelformat", "MONO8"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("Mono8"));
    EXPECT_EQ(pixelTypeOf(host), 0U);
    EXPECT_EQ(host.set("pixelformat", "rgb24"), accepted());
    EXPECT_EQ(host.set("pixelformat", "mono8"), accepted());
    EXPECT_EQ(host.get("pixelformat"), accepted("Mono8"));
}

TEST_F(PropertyPixelFormat, RefusesEveryOtherText) {
    CPropertyHost host(colour);
    ASSERT_EQ(host.set("pixelformat", "rgb24"), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("pixelformat", "purple"), refused(unsupportedPurple));
    EXPECT_EQ(host.set("pixelformat", "rgb"),
              refused("Unsupported pixelformat:\"rgb\". Valid formats are \"mono8\", \"raw8\" and "
                      "\"rgb24\"."));
    EXPECT_EQ(host.set("pixelformat", ""),
              refused("Unsupported pixelformat:\"\". Valid formats are \"mono8\", \"raw8\" and "
                      "\"rgb24\"."));
    for (const char* text : {"mono8 ", " mono8", "mono", "mono88", "7", "unkown", "RGB 24"}) {
        EXPECT_EQ(host.set("pixelformat", text).result, 1) << text;
        EXPECT_EQ(host.get("pixelformat"), accepted("RGB24")) << text;
    }
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertyPixelFormat, QuotesTheRefusedTextUnchanged) {
    CPropertyHost host(grey);
    EXPECT_EQ(host.set("pixelformat", "100%s ÄÖ \"x\""),
              refused("Unsupported pixelformat:\"100%s ÄÖ \"x\"\". Valid formats are \"mono8\", "
                      "\"raw8\" and \"rgb24\"."));
}

TEST_F(PropertyPixelFormat, CutsTheRefusalOfALongText) {
    CPropertyHost host(grey);
    EXPECT_EQ(host.set("pixelformat", std::string(300, 'x')),
              refused("Unsupported pixelformat:\"" + std::string(230, 'x')));
}

TEST_F(PropertyPixelFormat, IsNotSetWhileLive) {
    CPropertyHost host(grey);
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    for (const char* text : {"rgb24", "purple"}) {
        EXPECT_EQ(host.set("pixelformat", text),
                  refused("Can not set pixelformat, while live video is running."));
    }
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("pixelformat"), accepted("Mono8"));
    ASSERT_EQ(host.stop(), accepted());
    EXPECT_EQ(host.set("pixelformat", "rgb24"), accepted());
}

TEST_F(PropertyPixelFormat, TakesEffectThroughTheNewSink) {
    CPropertyHost host(colour);
    host.forgetCalls();
    ASSERT_EQ(host.set("pixelformat", "rgb24"), accepted());
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.calls({"Grabber::setSinkType"}).size(), 1U);
}

TEST_F(PropertyPixelFormat, ReadsAsUnknownForAnyOtherCode) {
    loadRig(grey);
    DShowLib::Grabber grabber;
    CPropertyPixelFormat property("Pixelformat", grabber, {});
    CHostText message;
    CHostText value;
    for (const std::uint32_t code : {1U, 3U, 5U, 6U, 8U, 0xFFFFFFFFU}) {
        property.setPixelType(static_cast<PixelType>(code));
        EXPECT_EQ(property.getValue(message, value), 0);
        EXPECT_EQ(value.text(), "unkown") << code;
    }
    EXPECT_TRUE(message.isUntouched());
    EXPECT_FALSE(property.isChanged());
}

TEST_F(PropertyPixelFormat, KeepsItsFlagUpOnceRaised) {
    loadRig(grey);
    DShowLib::Grabber grabber;
    CPropertyPixelFormat property("Pixelformat", grabber, {});
    CHostText message;
    EXPECT_FALSE(property.isChanged());
    EXPECT_EQ(property.setValue(message, "purple"), 1);
    EXPECT_TRUE(property.isChanged());
    EXPECT_EQ(property.pixelType(), PixelType::mono8);
    EXPECT_EQ(property.setValue(message, "rgb24"), 0);
    EXPECT_TRUE(property.isChanged());
    EXPECT_EQ(property.pixelType(), PixelType::rgb24);
}

TEST_F(PropertyPixelFormat, SharesTheSinkOfTheChannel) {
    loadRig(grey);
    const std::uint32_t before = alive().sinks;
    DShowLib::Grabber grabber;
    {
        DShowLib::FrameHandlerSink::tCreateData data;
        data.bufferCount = 5;
        const CPropertyPixelFormat property("Pixelformat", grabber,
                                            DShowLib::FrameHandlerSink::create(data));
        EXPECT_EQ(alive().sinks, before + 1);
    }
    EXPECT_EQ(alive().sinks, before);
}

}  // namespace
}  // namespace property_tests
