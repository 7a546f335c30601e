// SPDX-License-Identifier: MIT
// The frame rate: what the camera offers, and what a host may ask for.
#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using PropertyFrameRate = CPropertyTest;

std::string rates(const std::string& list) {
    return camera("formats = [\"Y800 (640x480)\"]\nframerates = [" + list + "]\n");
}

constexpr const char* usualBounds = "The frame rate must be between 3.750000 and 60.000000.";

TEST_F(PropertyFrameRate, IsTheHighestWhenTheCameraOpens) {
    CPropertyHost host(rates("60.0, 30.0, 15.0, 3.75"));
    EXPECT_EQ(host.get("framerate"), accepted("60.000000"));
    EXPECT_THAT(library_log::invocations({"Grabber::setFPS"}),
                ElementsAre("Grabber::setFPS(10000)"));
}

TEST_F(PropertyFrameRate, MayBeAnyRateWithinTheListsEnds) {
    CPropertyHost host(rates("3.75, 15.0, 30.0, 60.0"));
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "60"), accepted());
    EXPECT_EQ(host.set("framerate", "3.75"), accepted());
    EXPECT_EQ(host.set("framerate", "17.123456"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setFPS(60)", "Grabber::setFPS(3.75)",
                                            "Grabber::setFPS(17.123456)"));
}

TEST_F(PropertyFrameRate, IgnoresThatTheHighestIsRefusedWhenTheCameraOpens) {
    COpenGrabber grabber(rates("60.0, 30.0"));
    refuseCall("Grabber::setFPS");
    CPropertyFrameRate rate("Frame Rate", grabber.get());
    CHostText message;
    CHostText value;
    EXPECT_EQ(rate.getValue(message, value), 0);
    EXPECT_TRUE(message.isUntouched());
}

TEST_F(PropertyFrameRate, IsRefusedOutsideTheListsEnds) {
    CPropertyHost host(rates("3.75, 15.0, 30.0, 60.0"));
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "60.001"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", "3.7499"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", "-10"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", "1e9"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", "1e999"), refused(usualBounds));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(host.get("framerate"), accepted("60.000000"));
}

TEST_F(PropertyFrameRate, TakesAListInFallingOrder) {
    CPropertyHost host(rates("60.0, 30.0, 15.0, 3.75"));
    EXPECT_EQ(host.set("framerate", "60"), accepted());
    EXPECT_EQ(host.set("framerate", "3.75"), accepted());
    EXPECT_EQ(host.set("framerate", "60.001"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", "3.7"), refused(usualBounds));
}

TEST_F(PropertyFrameRate, LooksAtTheFirstAndTheLastOfTheListAlone) {
    CPropertyHost host(rates("20.0, 60.0, 1.0, 30.0"));
    EXPECT_EQ(host.set("framerate", "60"),
              refused("The frame rate must be between 20.000000 and 30.000000."));
    EXPECT_EQ(host.set("framerate", "25"), accepted());
}

TEST_F(PropertyFrameRate, CutsTheLimitsToHundredths) {
    CPropertyHost host(rates("3.759, 29.999"));
    EXPECT_EQ(host.set("framerate", "29.995"),
              refused("The frame rate must be between 3.750000 and 29.990000."));
    EXPECT_EQ(host.set("framerate", "29.99"), accepted());
    // Below the list's own first rate, but not below the limit as offered.
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "3.75"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setFPS(3.75)"));
}

TEST_F(PropertyFrameRate, OfASingleRateIsThatRate) {
    CPropertyHost host(rates("25.0"));
    EXPECT_EQ(host.set("framerate", "25"), accepted());
    EXPECT_EQ(host.set("framerate", "24"),
              refused("The frame rate must be between 25.000000 and 25.000000."));
}

TEST_F(PropertyFrameRate, ReadsTheNumberThatBeginsTheText) {
    CPropertyHost host(rates("0.001, 60.0"));
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "30fps"), accepted());
    EXPECT_EQ(host.set("framerate", " \t+1.5e1 x"), accepted());
    EXPECT_EQ(host.set("framerate", ".5"), accepted());
    EXPECT_EQ(host.set("framerate", "7."), accepted());
    EXPECT_EQ(host.set("framerate", "12,5"), accepted());
    EXPECT_EQ(host.set("framerate", "4e"), accepted());
    // No number at all is 0, and 0 is within these limits.
    EXPECT_EQ(host.set("framerate", "abc"), accepted());
    EXPECT_EQ(host.set("framerate", "0x10"), accepted());
    EXPECT_EQ(host.set("framerate", "inf"), accepted());
    EXPECT_EQ(host.set("framerate", "nan"), accepted());
    EXPECT_THAT(host.changes(),
                ElementsAre("Grabber::setFPS(30)", "Grabber::setFPS(15)", "Grabber::setFPS(0.5)",
                            "Grabber::setFPS(7)", "Grabber::setFPS(12)", "Grabber::setFPS(4)",
                            "Grabber::setFPS(0)", "Grabber::setFPS(0)", "Grabber::setFPS(0)",
                            "Grabber::setFPS(0)"));
}

TEST_F(PropertyFrameRate, RefusesATextWithoutANumber) {
    CPropertyHost host(rates("3.75, 60.0"));
    EXPECT_EQ(host.set("framerate", "abc"), refused(usualBounds));
    EXPECT_EQ(host.set("framerate", ""), refused(usualBounds));
}

TEST_F(PropertyFrameRate, StopsAndStartsLiveVideoAroundTheChange) {
    CPropertyHost host(rates("3.75, 60.0"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "30"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::stopLive()", "Grabber::setFPS(30)",
                                            "Grabber::startLive(false)"));
    EXPECT_EQ(alive().liveDevices, 1U);
    EXPECT_EQ(host.get("framerate"), accepted("30.000000"));
}

TEST_F(PropertyFrameRate, StartsNoLiveVideoThatDidNotRun) {
    CPropertyHost host(rates("3.75, 60.0"));
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "30"), accepted());
    EXPECT_THAT(host.changes(), ElementsAre("Grabber::setFPS(30)"));
}

TEST_F(PropertyFrameRate, LeavesLiveVideoAloneWhenRefused) {
    CPropertyHost host(rates("3.75, 60.0"));
    ASSERT_EQ(host.start(), accepted());
    host.forgetCalls();
    EXPECT_EQ(host.set("framerate", "100"), refused(usualBounds));
    EXPECT_THAT(host.changes(), IsEmpty());
    EXPECT_EQ(alive().liveDevices, 1U);
}

TEST_F(PropertyFrameRate, IgnoresWhatTheDeviceSaysToTheChange) {
    CPropertyHost host(rates("3.75, 60.0"));
    ASSERT_EQ(host.start(), accepted());
    refuseCall("Grabber::stopLive");
    refuseCall("Grabber::setFPS");
    refuseCall("Grabber::startLive");
    EXPECT_EQ(host.set("framerate", "30"), accepted());
}

TEST_F(PropertyFrameRate, SaysWhenThereIsNoList) {
    CPropertyHost host(rates("3.75, 60.0"));
    host.forgetCalls();
    refuseCall("Grabber::getAvailableFPS_");
    EXPECT_EQ(host.set("framerate", "30"), refused("No frame rates available!"));
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertyFrameRate, ThrowsOutOfRangeForAnEmptyList) {
    COpenGrabber grabber(rates("3.75, 60.0"));
    CPropertyFrameRate property("Frame Rate", grabber.get());
    emptyCall("Grabber::getAvailableFPS_");
    CHostText message;
    EXPECT_EQ(outOfRangeText([&] { property.setValue(message, "30"); }),
              "invalid vector<T> subscript");
    EXPECT_TRUE(message.isUntouched());
    EXPECT_FALSE(property.isChanged());
}

TEST_F(PropertyFrameRate, OfAnEmptyListIsUnknownToTheHost) {
    CPropertyHost host(rates("3.75, 60.0"));
    host.forgetCalls();
    emptyCall("Grabber::getAvailableFPS_");
    EXPECT_EQ(host.set("framerate", "30"), refused("Unknown property \"framerate\""));
    EXPECT_THAT(host.changes(), IsEmpty());
}

TEST_F(PropertyFrameRate, IsThatOfTheCurrentFormat) {
    CPropertyHost host(camera(R"toml(
formats = [{ name = "Y800 (640x480)", framerates = [10.0, 20.0] },
           { name = "Y800 (320x240)", framerates = [40.0, 80.0] }]
framerates = [1.0]
)toml"));
    ASSERT_EQ(host.set("videoformat", "Y800 (640x480)"), accepted());
    EXPECT_EQ(host.set("framerate", "40"),
              refused("The frame rate must be between 10.000000 and 20.000000."));
    ASSERT_EQ(host.set("videoformat", "Y800 (320x240)"), accepted());
    EXPECT_EQ(host.set("framerate", "40"), accepted());
    EXPECT_EQ(host.set("framerate", "20"),
              refused("The frame rate must be between 40.000000 and 80.000000."));
}

TEST_F(PropertyFrameRate, WritesAtMostTwentyCharacters) {
    CPropertyHost host(rates("1e15"));
    EXPECT_EQ(host.get("framerate"), accepted("1000000000000000.000"));
}

TEST_F(PropertyFrameRate, LimitsThatFitNoIntegerAreTheLowestOne) {
    CPropertyHost host(rates("1e15"));
    EXPECT_EQ(host.set("framerate", "30"),
              refused("The frame rate must be between -21474836.480000 and -21474836.480000."));
}

TEST_F(PropertyFrameRate, AsksForTheListOfTheCurrentFormatFirst) {
    CPropertyHost host(rates("3.75, 60.0"));
    host.forgetCalls();
    ASSERT_EQ(host.set("framerate", "30"), accepted());
    EXPECT_THAT(
        host.calls({"Grabber::getVideoFormat", "Grabber::getAvailableFPS_", "Grabber::isLive",
                    "Grabber::setFPS"}),
        ElementsAre("Grabber::getVideoFormat()", "Grabber::getAvailableFPS_(Y800 (640x480))",
                    "Grabber::isLive()", "Grabber::setFPS(30)"));
}

}  // namespace
}  // namespace property_tests
