// SPDX-License-Identifier: MIT
// What the two halves of the checked adapter share: its cameras, and how it is wrong.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/camhost_logic/checked_adapter.h"

namespace camhost::test {

using CheckedSettings = std::map<std::string, std::string>;

struct CheckedCamera {
    std::string name;
    std::string serial;
    CheckedSettings settings;
    bool live = false;
    bool wasLive = false;
    bool hasFrame = false;
    bool closed = false;
    std::uint8_t frames = 0;
};

struct CheckedAdapter {
    CMadeUpSystem* system = nullptr;
    Wrong wrong = Wrong::Nothing;
    std::vector<std::unique_ptr<CheckedCamera>> cameras;  // those that were closed stay at the end
    bool walked = false;                                  // once to the end of the list
    CheckedCamera other;                                  // for a context that is not the camera's
};

// The entry points are plain functions; they find their data here.
extern CheckedAdapter* current;

bool is(Wrong wrong);
void write(char* to, const std::string& text);
std::int32_t refuse(char* message, const std::string& text);
// Null for a context that is null or closed.
CheckedCamera* cameraOf(void* context);

CheckedSettings ordinarySettings();
void fillSettingEntries(VideoChannelRecord& record);

}  // namespace camhost::test
