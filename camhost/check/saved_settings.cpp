// SPDX-License-Identifier: MIT
#include "camhost/check/saved_settings.h"

#include <algorithm>

#include "camhost/settings/key_kinds.h"

namespace camhost {

CSavedSettings::CSavedSettings(CHostCalls& host, const std::vector<std::string>& keys)
    : m_keys(keys) {
    for (const std::string& key : keys) {
        if (!loadStage(key)) {
            continue;
        }
        if (const Answer answer = host.get(key); answer.isDone() && answer.text) {
            m_values.emplace_back(key, *answer.text);
        }
    }
    std::stable_sort(m_values.begin(), m_values.end(), [](const auto& a, const auto& b) {
        return loadStage(a.first) < loadStage(b.first);
    });
}

std::string CSavedSettings::textOf(const std::string& key) const {
    const auto found = std::find_if(m_values.begin(), m_values.end(),
                                    [&](const auto& each) { return each.first == key; });
    return found == m_values.end() ? std::string() : found->second;
}

bool CSavedSettings::isAutomatic(const std::string& key) const {
    const auto guard = autoSwitchFor(key, m_keys);
    return guard && textOf(*guard) == "true";
}

std::vector<std::string> CSavedSettings::changed(CHostCalls& host) const {
    std::vector<std::string> keys;
    for (const auto& [key, text] : m_values) {
        if (!isAutomatic(key) && host.get(key).text != text) {
            keys.push_back(key);
        }
    }
    return keys;
}

void CSavedSettings::putBack(CHostCalls& host) const {
    // A format may have changed the rate behind it, so once more.
    constexpr int attempts = 2;
    for (int round = 0; round < attempts; ++round) {
        for (const std::string& key : changed(host)) {
            if (const auto guard = autoSwitchFor(key, m_keys)) {
                host.set(*guard, "false");
            }
        }
        for (const auto& [key, text] : m_values) {
            if (host.get(key).text != text) {
                host.set(key, text);
            }
        }
    }
}

std::vector<std::string> CSavedSettings::differences(CHostCalls& host) const {
    std::vector<std::string> found;
    for (const std::string& key : changed(host)) {
        found.push_back(key + " is " + host.get(key).text.value_or("not there") + ", was " +
                        textOf(key));
    }
    return found;
}

}  // namespace camhost
