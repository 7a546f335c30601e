// SPDX-License-Identifier: MIT
// The texts of a camera's settings as they were read last, and what has changed since:
// by automatics, or by somebody behind the host's back. Reads a little at a time, since no
// frame is taken meanwhile. Portable.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "camhost/base/system.h"
#include "camhost/camera/record_channel.h"

namespace camhost {

struct WatchedSetting {
    std::string key;
    std::string text;
};

struct SettingMove {
    std::string key;
    std::string before;
    std::string after;
};

class CSettingsWatch {
public:
    // Reads them all once; those that can not be read are left out.
    CSettingsWatch(CRecordChannel& camera, CSystem& system, const std::vector<std::string>& keys);

    // Goes on reading for a moment, unless all were read less than half a second ago. What
    // can not be read just now keeps its text.
    std::vector<SettingMove> step();

    const std::vector<WatchedSetting>& settings() const { return m_settings; }

private:
    std::optional<std::string> read(const std::string& key);

    CRecordChannel& m_camera;
    CSystem& m_system;
    std::vector<WatchedSetting> m_settings;
    std::size_t m_next = 0;  // to be read
    double m_roundBegan = 0.0;
};

}  // namespace camhost
