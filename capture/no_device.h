// SPDX-License-Identifier: MIT
// Messages to the host that more than one operation reports.
#pragma once

inline constexpr const char* noDeviceText = "No valid video capture device selected.";
