// SPDX-License-Identifier: MIT
// Which form of pixels a media subtype stands for.
#pragma once

#include <optional>
#include <string_view>

#include "platform/windows.h"
#include "virtual_cameras/scenes/picture.h"

namespace virtual_cameras {

// The form in which frames of a media subtype are delivered, for a video format
// of the given text. The null subtype means the format's own. Nothing when frames
// of that subtype are not to be had.
std::optional<PixelForm> pixelFormFor(const GUID& subtype, std::string_view formatText,
                                      bool colour);
// The media subtype in which an answer names the form.
GUID subtypeOf(PixelForm form, const GUID& asked);

}  // namespace virtual_cameras
