// SPDX-License-Identifier: MIT
#include "camhost/settings/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camhost/base/failure.h"

namespace camhost {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

std::string reasonFor(const char* text) {
    try {
        parseSettingsFile(text, "x.json");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.exit, ExitCode::Usage);
        return failure.message;
    }
    return "accepted";
}

TEST(SettingsFile, WhatWasWrittenIsReadBack) {
    const SettingsFile file{"1A2B",
                            "K\xC3\xA4mera",
                            "2024-05-06T07:08:09Z",
                            {{"gain value range", "12"}, {"exposure value abs", "0.010000"}}};
    const SettingsFile read = parseSettingsFile(settingsFileText(file), "x.json");
    EXPECT_EQ(read.serial, "1A2B");
    EXPECT_EQ(read.name, "K\xC3\xA4mera");
    EXPECT_EQ(read.date, "2024-05-06T07:08:09Z");
    EXPECT_EQ(read.settings, file.settings);
}

TEST(SettingsFile, OtherFilesAreRefusedWithTheReason) {
    EXPECT_THAT(reasonFor("{"), HasSubstr("\"x.json\" is no settings file: parse error"));
    EXPECT_EQ(reasonFor("[]"),
              "\"x.json\" is no settings file: its schema is not \"camhost-settings/1\"");
    EXPECT_EQ(reasonFor(R"({"schema":"camhost-settings/1"})"),
              "\"x.json\" is no settings file: it holds no settings");
    EXPECT_EQ(reasonFor(R"({"schema":"camhost-settings/1","settings":{"a":1}})"),
              "\"x.json\" is no settings file: \"a\" is not a text");
    EXPECT_EQ(reasonFor(R"({"schema":"camhost-settings/1","settings":{"a":"1\u0000"}})"),
              "\"x.json\" is no settings file: \"a\" is not a text");
}

TEST(SettingsFile, LoadingStartsWithTheFormatAndEndsWithAutomatics) {
    SettingsFile file;
    for (const char* key : {"exposure auto switch", "exposure value abs", "framerate",
                            "pixelformat", "videoformat", "videoformats", "videonorm"}) {
        file.settings.emplace_back(key, "");
    }
    std::vector<std::string> keys;
    for (const auto& setting : loadOrder(file)) {
        keys.push_back(setting.first);
    }
    EXPECT_THAT(keys, ElementsAre("videonorm", "videoformat", "pixelformat", "framerate",
                                  "exposure value abs", "exposure auto switch"));
}

}  // namespace
}  // namespace camhost
