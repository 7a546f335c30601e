// SPDX-License-Identifier: MIT
// All settings of the camera shown, read again and again a few at a time, so that frames
// go by in between. The owner's thread. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/base/system.h"
#include "camhost/settings/settings.h"

namespace camhost {

class CSettingsWatch {
public:
    explicit CSettingsWatch(CSystem& system) : m_system(system) {}

    // From now on these, which outlive the watch or another call of this; all are read.
    void show(CSettings& settings);
    void readAll();
    // Reads on for some milliseconds. True when the last setting was read, and one of them
    // was another than before.
    bool readOn();

    // Empty when there is no such setting or it can't be read.
    std::string text(const std::string& key) const;
    // As `props --all -L` tells them, each with its item and the switch that guards it.
    std::string json() const;

private:
    void startRound();

    CSystem& m_system;
    CSettings* m_shown = nullptr;
    std::vector<Setting> m_settings;
    std::size_t m_next = 0;  // to be read in this round
    bool m_changed = false;  // one of this round
    double m_roundAt = 0.0;
};

}  // namespace camhost
