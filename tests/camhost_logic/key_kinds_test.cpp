// SPDX-License-Identifier: MIT
#include "camhost/settings/key_kinds.h"

#include <gtest/gtest.h>

namespace camhost {
namespace {

TEST(KeyKinds, SuffixesTellTheKind) {
    EXPECT_EQ(keyKind("gain value range"), KeyKind::Range);
    EXPECT_EQ(keyKind("gain value range12"), KeyKind::Range);
    EXPECT_EQ(keyKind("exposure value abs"), KeyKind::Absolute);
    EXPECT_EQ(keyKind("exposure auto switch"), KeyKind::Switch);
    EXPECT_EQ(keyKind("trigger mode strings"), KeyKind::Strings);
    EXPECT_EQ(keyKind("strange thing"), KeyKind::Other);
    EXPECT_EQ(keyKind(""), KeyKind::Other);
    EXPECT_EQ(keyKind("42"), KeyKind::Other);
}

TEST(KeyKinds, LimitsBelongToRangesAndAbsoluteValues) {
    EXPECT_EQ(keyKind("gain value range min"), KeyKind::Limit);
    EXPECT_EQ(keyKind("gain value range1 max"), KeyKind::Limit);
    EXPECT_EQ(keyKind("exposure value abs max"), KeyKind::Limit);
    EXPECT_EQ(keyKind("lens min switch"), KeyKind::Switch);
    EXPECT_EQ(keyKind("something min"), KeyKind::Other);
}

TEST(KeyKinds, FixedAndNumberedKeysAreKnown) {
    EXPECT_EQ(keyKind("framerate"), KeyKind::FrameRate);
    EXPECT_EQ(keyKind("videoformats"), KeyKind::NameList);
    EXPECT_EQ(keyKind("videoformat_10"), KeyKind::FormatAt);
    EXPECT_EQ(keyKind("feature_1"), KeyKind::ListEntry);
    EXPECT_EQ(keyKind("execute_22"), KeyKind::ListEntry);
    EXPECT_EQ(keyKind("feature_x"), KeyKind::Other);
}

TEST(KeyKinds, LevelsFollowWhatAHostLists) {
    EXPECT_EQ(keyLevel("gain value range"), KeyLevel::Basic);
    EXPECT_EQ(keyLevel("gain value range min"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("binning factor strings"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("user_set value range"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("videoformat_0"), KeyLevel::Expert);
    EXPECT_EQ(keyLevel("feature_1"), KeyLevel::Internal);
}

TEST(KeyKinds, AnAutomaticGuardsTheKeysOfItsItem) {
    const std::vector<std::string> keys{"exposure auto switch", "white balance auto switch",
                                        "white auto switch", "gain value range"};
    EXPECT_EQ(autoSwitchFor("exposure value abs", keys), "exposure auto switch");
    EXPECT_EQ(autoSwitchFor("white balance red range", keys), "white balance auto switch");
    EXPECT_EQ(autoSwitchFor("white value range", keys), "white auto switch");
    EXPECT_EQ(autoSwitchFor("exposures value abs", keys), std::nullopt);
    EXPECT_EQ(autoSwitchFor("gain value range", keys), std::nullopt);
    EXPECT_EQ(autoSwitchFor("exposure auto switch", keys), std::nullopt);
}

TEST(KeyKinds, LoadingGoesFromNormToAutomatics) {
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
