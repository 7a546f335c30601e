// SPDX-License-Identifier: MIT
// Statistics of samples, and the judgement of what limits a rate.
#include <gtest/gtest.h>

#include "camhost/measure/rate_limit.h"
#include "camhost/measure/sample_series.h"

namespace camhost {
namespace {

TEST(SampleSeries, PercentilesAreSamples) {
    CSampleSeries series;
    for (int i = 200; i >= 1; --i) {
        series.add(i / 1000.0);
    }
    const auto summary = series.summary();
    ASSERT_TRUE(summary);
    EXPECT_EQ(summaryText(*summary),
              "min 1.00  mean 100.50  p50 100.00  p95 190.00  p99 198.00  max 200.00 ms");
}

TEST(SampleSeries, OneSampleIsAllOfThem) {
    CSampleSeries series;
    EXPECT_FALSE(series.summary());
    series.add(0.002);
    EXPECT_EQ(summaryText(*series.summary()),
              "min 2.00  mean 2.00  p50 2.00  p95 2.00  p99 2.00  max 2.00 ms");
    EXPECT_EQ(summaryJson(*series.summary()).toText(),
              "{\"min\":2.0,\"mean\":2.0,\"p50\":2.0,\"p95\":2.0,\"p99\":2.0,\"max\":2.0}");
}

// Ten seconds at half of the rate: fifty frames are missing.
RateFacts halfOfTen() {
    RateFacts facts;
    facts.reported = 10.0;
    facts.measured = 5.0;
    facts.span = 10.0;
    return facts;
}

TEST(RateLimit, LateWaitsAreNamedWhereCopiesAreNotMostOfThem) {
    RateFacts facts = halfOfTen();
    facts.missedByHost = 25.0;
    facts.missedByCopies = 12.0;
    EXPECT_EQ(limitOf(facts), RateLimit::LateWaits);
    EXPECT_EQ(limitText(RateLimit::LateWaits, facts),
              "late waits: what is done between two takes longer than a frame of 10.0 fps, which "
              "is 100.0 ms");
    facts.missedByCopies = 13.0;
    EXPECT_EQ(limitOf(facts), RateLimit::Copy);
}

TEST(RateLimit, WhatExplainsLessThanHalfIsNotNamed) {
    RateFacts facts = halfOfTen();
    facts.missedByHost = 24.0;
    facts.timedOut = 2.4;
    EXPECT_EQ(limitOf(facts), RateLimit::Camera);
    facts.timedOut = 2.5;
    EXPECT_EQ(limitOf(facts), RateLimit::Timeouts);
}

TEST(RateLimit, AnExposureOfOneFrameIsNotTooLong) {
    RateFacts facts = halfOfTen();
    facts.exposure = 0.1;
    EXPECT_EQ(limitOf(facts), RateLimit::Camera);
    facts.exposure = 0.2;
    EXPECT_EQ(limitOf(facts), RateLimit::Exposure);
}

TEST(RateLimit, ThreeInAHundredAreTheRate) {
    RateFacts facts = halfOfTen();
    facts.measured = 9.8;
    EXPECT_EQ(limitOf(facts), RateLimit::Rate);
    facts.measured = 10.2;
    EXPECT_EQ(limitOf(facts), RateLimit::Rate);
    facts.measured = 10.4;
    EXPECT_EQ(limitOf(facts), RateLimit::None);
}

TEST(RateLimit, TheWordsArePartOfTheJson) {
    EXPECT_STREQ(limitName(RateLimit::None), "none");
    EXPECT_STREQ(limitName(RateLimit::Rate), "rate");
    EXPECT_STREQ(limitName(RateLimit::Exposure), "exposure");
    EXPECT_STREQ(limitName(RateLimit::Timeouts), "timeouts");
    EXPECT_STREQ(limitName(RateLimit::Copy), "copy");
    EXPECT_STREQ(limitName(RateLimit::LateWaits), "late_waits");
    EXPECT_STREQ(limitName(RateLimit::Camera), "camera");
}

}  // namespace
}  // namespace camhost
