// SPDX-License-Identifier: MIT
// The one block in which a host applies exposure, contrast, brightness, trigger and
// region: filled here, and compared with what came of it. Portable.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camhost/settings/parameter_texts.h"
#include "camhost/settings/settings.h"
#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

namespace camhost {

inline constexpr const char* exposureAutoKey = "exposure auto switch";
inline constexpr const char* exposureKey = "exposure value abs";
inline constexpr const char* contrastKey = "contrast value range";
inline constexpr const char* brightnessKey = "brightness value range";
inline constexpr const char* triggerKey = "trigger enable switch";
inline constexpr const char* polarityKey = "trigger polarity switch";
// All settings that a block changes.
inline constexpr std::array<const char*, 6> blockKeys{exposureAutoKey, exposureKey, contrastKey,
                                                      brightnessKey,   triggerKey,  polarityKey};

// What is not asked for stays as it is now: the settings tell it, and the record
// where they do not.
CameraParameterBlock makeParameterBlock(CSettings& settings, const VideoChannelRecord& record,
                                        const AskedParameters& asked);

// What the setting behind a parameter that was asked for must read afterwards.
struct ExpectedSetting {
    const char* parameter;
    const char* key;
    std::string text;
    std::string typed;  // in the unit of the parameter, as the user knows it
};
std::vector<ExpectedSetting> expectedSettings(CSettings& settings, const AskedParameters& asked);

// A block holds whole-number ranges as fractions f of their span; the adapter makes
// minimum + truncate((maximum - minimum) * f) of them.
double fractionFor(std::int32_t minimum, std::int32_t maximum, std::int32_t value);

}  // namespace camhost
