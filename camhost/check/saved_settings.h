// SPDX-License-Identifier: MIT
// The settings of a camera as a check found them, for putting them back. Portable.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "camhost/check/host_calls.h"

namespace camhost {

class CSavedSettings {
public:
    // Reads those of the keys that can be set.
    CSavedSettings(CHostCalls& host, const std::vector<std::string>& keys);

    // While stopped: writes what is no longer as it was. Values that an automatic minds are
    // the camera's own.
    void putBack(CHostCalls& host) const;
    // "key is a, was b" for what could not be put back.
    std::vector<std::string> differences(CHostCalls& host) const;

private:
    bool isAutomatic(const std::string& key) const;
    std::string textOf(const std::string& key) const;
    std::vector<std::string> changed(CHostCalls& host) const;

    std::vector<std::string> m_keys;
    std::vector<std::pair<std::string, std::string>> m_values;  // in the order of setting
};

}  // namespace camhost
