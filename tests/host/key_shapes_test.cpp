// SPDX-License-Identifier: MIT
#include "host/key_shapes.h"

#include <gtest/gtest.h>

namespace camhost {
namespace {

TEST(KeyShapes, SuffixesTellTheKind) {
    EXPECT_EQ(keyShape("gain value range"), KeyShape::Range);
    EXPECT_EQ(keyShape("gain value range12"), KeyShape::Range);
    EXPECT_EQ(keyShape("exposure value abs"), KeyShape::Absolute);
    EXPECT_EQ(keyShape("exposure auto switch"), KeyShape::Switch);
    EXPECT_EQ(keyShape("trigger mode strings"), KeyShape::Strings);
    EXPECT_EQ(keyShape("strange thing"), KeyShape::Other);
    EXPECT_EQ(keyShape(""), KeyShape::Other);
    EXPECT_EQ(keyShape("42"), KeyShape::Other);
}

TEST(KeyShapes, LimitsBelongToRangesAndAbsoluteValues) {
    EXPECT_EQ(keyShape("gain value range min"), KeyShape::Limit);
    EXPECT_EQ(keyShape("gain value range1 max"), KeyShape::Limit);
    EXPECT_EQ(keyShape("exposure value abs max"), KeyShape::Limit);
    EXPECT_EQ(keyShape("lens min switch"), KeyShape::Switch);
    EXPECT_EQ(keyShape("something min"), KeyShape::Other);
}

TEST(KeyShapes, FixedAndNumberedKeysAreKnown) {
    EXPECT_EQ(keyShape("framerate"), KeyShape::FrameRate);
    EXPECT_EQ(keyShape("videoformats"), KeyShape::NameList);
    EXPECT_EQ(keyShape("videoformat_10"), KeyShape::FormatAt);
    EXPECT_EQ(keyShape("feature_1"), KeyShape::ListEntry);
    EXPECT_EQ(keyShape("execute_22"), KeyShape::ListEntry);
    EXPECT_EQ(keyShape("feature_x"), KeyShape::Other);
}

TEST(KeyShapes, LevelsFollowWhatAHostLists) {
    EXPECT_EQ(keyLevel("gain value range"), KeyLevel::Basic);
    EXPECT_EQ(keyLevel("gain value range min"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("binning factor strings"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("user_set value range"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("videoformat_0"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("feature_1"), KeyLevel::Internal);
}

TEST(KeyShapes, AnAutomaticGuardsTheKeysOfItsItem) {
    const std::vector<std::string> keys{"exposure auto switch", "white balance auto switch",
                                        "white auto switch", "gain value range"};
    EXPECT_EQ(autoSwitchFor("exposure value abs", keys), "exposure auto switch");
    EXPECT_EQ(autoSwitchFor("white balance red range", keys), "white balance auto switch");
    EXPECT_EQ(autoSwitchFor("white value range", keys), "white auto switch");
    EXPECT_EQ(autoSwitchFor("exposures value abs", keys), std::nullopt);
    EXPECT_EQ(autoSwitchFor("gain value range", keys), std::nullopt);
    EXPECT_EQ(autoSwitchFor("exposure auto switch", keys), std::nullopt);
}

TEST(KeyShapes, LoadingGoesFromNormToAutomatics) {
    const char* ordered[] = {"videonorm",           "inputchannel",       "videoformat",
                             "pixelformat",         "framerate",          "mode value strings",
                             "gain value range",    "exposure value abs", "trigger enable switch",
                             "exposure auto switch"};
    for (std::size_t i = 1; i < std::size(ordered); ++i) {
        EXPECT_LT(loadStage(ordered[i - 1]), loadStage(ordered[i])) << ordered[i];
    }
    EXPECT_EQ(loadStage("videoformats"), std::nullopt);
    EXPECT_EQ(loadStage("gain value range min"), std::nullopt);
}

}  // namespace
}  // namespace camhost
