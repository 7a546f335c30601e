// SPDX-License-Identifier: MIT
// The file that save writes and load and diff read: the settings of one camera
// as texts, with its serial number and the date. Portable.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace camhost {

struct SettingsFile {
    std::string serial;
    std::string name;
    std::string date;
    std::vector<std::pair<std::string, std::string>> settings;
};

std::string settingsFileText(const SettingsFile& file);
// Throws a usage Failure that names the file.
SettingsFile parseSettingsFile(const std::string& text, const std::string& fileName);

// The saved settings in the order in which they are safe to set: norm, channel,
// format, pixel format, frame rate, values, switches; automatics at the end.
// What can't be set is left out.
std::vector<std::pair<std::string, std::string>> loadOrder(const SettingsFile& file);

}  // namespace camhost
