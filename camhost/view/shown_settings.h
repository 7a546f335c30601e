// SPDX-License-Identifier: MIT
// All settings of the camera shown, read again and again a few at a time, so that frames
// go by in between. Those of a camera that is gone stay as they were read last. The
// owner's thread. Portable.
#pragma once

#include <string>
#include <vector>

#include "camhost/base/system.h"
#include "camhost/settings/settings.h"
#include "camhost/view/shown_camera.h"

namespace camhost {

class CShownSettings {
public:
    explicit CShownSettings(CSystem& system) : m_system(system) {}

    // From now on those of this camera, which outlives this or its next call; all are read.
    void show(CShownCamera& camera);
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
    CShownCamera* m_camera = nullptr;
    std::vector<Setting> m_settings;
    std::size_t m_next = 0;  // to be read in this round
    bool m_changed = false;  // one of this round
    double m_roundAt = 0.0;
};

}  // namespace camhost
