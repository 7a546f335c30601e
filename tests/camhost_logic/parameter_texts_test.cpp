// SPDX-License-Identifier: MIT
#include "camhost/settings/parameter_texts.h"

#include <gtest/gtest.h>

#include <cmath>

#include "camhost/base/failure.h"
#include "camhost/settings/parameter_block.h"

namespace camhost {
namespace {

TEST(ParameterTexts, AllSixAreRead) {
    const AskedParameters asked = parseParameters({"exposure=0.01", "CONTRAST=0.5", "brightness=-1",
                                                   "trigger=on", "polarity=no", "roi=1,2,-3,4"});
    EXPECT_EQ(asked.exposure, 0.01);
    EXPECT_EQ(asked.contrast, 0.5);
    EXPECT_EQ(asked.brightness, -1.0);
    EXPECT_EQ(asked.trigger, true);
    EXPECT_EQ(asked.polarity, false);
    EXPECT_EQ(asked.region, (std::array<std::int32_t, 4>{1, 2, -3, 4}));
}

TEST(ParameterTexts, WhatCanNotBeReadIsRefused) {
    for (const char* text : {"exposure=fast", "contrast=", "trigger=2", "roi=1,2,3", "roi=1,2,3,x",
                             "gain=1", "exposure"}) {
        EXPECT_THROW(parseParameters({text}), Failure) << text;
    }
}

// The adapter computes minimum + truncate((maximum - minimum) * fraction).
TEST(ParameterTexts, TheFractionOfAValueGivesTheValueBack) {
    const std::array<std::int32_t, 3> ranges[] = {{0, 255, 127}, {0, 255, 0},  {0, 255, 255},
                                                  {-64, 64, 3},  {10, 10, 10}, {255, 0, 77}};
    for (const auto& [minimum, maximum, value] : ranges) {
        const double product =
            (static_cast<double>(maximum) - minimum) * fractionFor(minimum, maximum, value);
        EXPECT_EQ(minimum + static_cast<std::int32_t>(std::trunc(product)), value)
            << minimum << " " << maximum;
    }
    for (std::int32_t value = 0; value <= 1000; ++value) {
        EXPECT_EQ(static_cast<std::int32_t>(std::trunc(1000 * fractionFor(0, 1000, value))), value);
    }
}

}  // namespace
}  // namespace camhost
