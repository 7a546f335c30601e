// SPDX-License-Identifier: MIT
// The settings and actions of one camera: found through the adapter's numbered
// lists, so that keys hidden from a host are there too. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/failure.h"
#include "camhost/camera/record_channel.h"
#include "camhost/settings/setting.h"

namespace camhost {

class CSettings {
public:
    // The prefix is what a pasted hint must start with, such as "camhost -c 1A2B".
    explicit CSettings(CRecordChannel& channel, std::string hintPrefix = "camhost");

    const std::vector<std::string>& keys() const { return m_keys; }
    const std::vector<std::string>& commands() const { return m_commands; }
    // The same, formats by number in the order of their numbers.
    std::vector<std::string> keysInOrder() const;
    bool hasKey(const std::string& key) const;
    bool hasCommand(const std::string& command) const;
    // "feature_1" and so on, with the ends of both lists.
    std::vector<std::string> listEntries() const;

    // A key that the adapter does not know leaves `problem` set.
    Setting read(const std::string& key, bool withChoices = false);
    // Throws when the adapter does not know the key.
    Setting readKnown(const std::string& key);
    static Setting command(const std::string& name);

    // The automatic switch that guards a key.
    std::optional<std::string> automaticOf(const std::string& key) const;
    // The same, when it is on.
    std::optional<std::string> activeAutomatic(const std::string& key);

    // Choices that can be had without asking the camera to change anything.
    std::vector<std::string> choices(const std::string& key);

    Failure unknownKey(const std::string& key) const;
    Failure unknownCommand(const std::string& command) const;

private:
    std::vector<std::string> readList(const std::string& prefix);
    void readFacts(Setting& setting, bool withChoices);
    void readLimits(Setting& setting);

    CRecordChannel& m_channel;
    std::string m_hintPrefix;
    std::vector<std::string> m_keys;
    std::vector<std::string> m_commands;
};

}  // namespace camhost
