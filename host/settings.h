// SPDX-License-Identifier: MIT
// The settings and actions of one camera: found through the adapter's numbered
// lists, so that keys hidden from a host are there too. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/channel.h"
#include "host/data_value.h"
#include "host/failure.h"
#include "host/key_shapes.h"

namespace camhost {

struct Setting {
    std::string key;
    SettingType type = SettingType::Text;
    KeyLevel level = KeyLevel::Basic;
    std::string text;
    std::optional<std::string> minimum;
    std::optional<std::string> maximum;
    std::vector<std::string> choices;
    bool automatic = false;  // guarded by an automatic that is on
    bool readOnly = false;
    std::string problem;  // why it can't be read

    std::vector<std::string> flags() const;
};

class CSettings {
public:
    explicit CSettings(CChannel& channel);

    const std::vector<std::string>& keys() const { return m_keys; }
    const std::vector<std::string>& commands() const { return m_commands; }
    bool hasKey(const std::string& key) const;
    bool hasCommand(const std::string& command) const;
    // "feature_1" and so on, with the ends of both lists.
    std::vector<std::string> listEntries() const;

    // A key that the adapter does not know leaves `problem` set.
    Setting read(const std::string& key, bool withChoices = false);
    // Throws when the adapter does not know the key.
    Setting readKnown(const std::string& key);
    static Setting command(const std::string& name);

    // The automatic switch that guards a key, when it is on.
    std::optional<std::string> activeAutomatic(const std::string& key);

    // Choices that can be had without asking the camera to change anything.
    std::vector<std::string> choices(const std::string& key);

    Failure unknownKey(const std::string& key) const;
    Failure unknownCommand(const std::string& command) const;

private:
    std::vector<std::string> readList(const std::string& prefix);
    void readLimits(Setting& setting);

    CChannel& m_channel;
    std::vector<std::string> m_keys;
    std::vector<std::string> m_commands;
};

CData settingData(const Setting& setting);

// "key (type) : min=0 max=255 value=128 flags=auto", aligned to the widths.
struct SettingColumns {
    std::size_t key = 0;
    std::size_t type = 0;
};
SettingColumns columnsFor(const std::vector<Setting>& settings);
std::string settingLine(const Setting& setting, const SettingColumns& columns);
// Indented below the line, the current one marked.
std::vector<std::string> choiceLines(const Setting& setting);
// Key, type, value, minimum, maximum, flags.
std::string plainLine(const Setting& setting);

}  // namespace camhost
