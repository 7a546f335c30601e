// SPDX-License-Identifier: MIT
#include "camhost/settings/settings.h"

#include <algorithm>
#include <utility>

#include "camhost/base/name_search.h"
#include "camhost/base/texts.h"
#include "camhost/camera/adapter_call.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

// Ends the walk of an adapter whose list never does.
constexpr int mostEntries = 100000;

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Words that other programs have for settings.
constexpr std::pair<std::string_view, const char*> otherNames[] = {
    {"fps", "framerate"},
    {"frame rate", "framerate"},
    {"frames per second", "framerate"},
    {"acquisitionframerate", "framerate"},
    {"exposuretime", "exposure value abs"},
    {"exposure time", "exposure value abs"},
    {"shutter", "exposure value abs"},
    {"exposureauto", "exposure auto switch"},
    {"gainauto", "gain auto switch"},
    {"triggermode", "trigger enable switch"},
    {"resolution", "videoformat"},
    {"size", "videoformat"},
    {"format", "videoformat"},
    {"pixel format", "pixelformat"},
};

std::vector<std::string> meantKeys(const std::string& asked, const std::vector<std::string>& keys) {
    const std::string wanted = normalisedKey(asked);
    for (const auto& [other, key] : otherNames) {
        if (other == wanted && contains(keys, key)) {
            return {key};
        }
    }
    return nearNames(asked, keys);
}

std::string meantText(const std::vector<std::string>& near) {
    return near.empty() ? std::string() : "; did you mean " + quotedList(near) + "?";
}

}  // namespace

CSettings::CSettings(CRecordChannel& channel, std::string hintPrefix)
    : m_channel(channel),
      m_hintPrefix(std::move(hintPrefix)),
      m_keys(readList("feature_")),
      m_commands(readList("execute_")) {}

std::vector<std::string> CSettings::readList(const std::string& prefix) {
    std::vector<std::string> entries;
    for (int number = 1; number <= mostEntries; ++number) {
        std::string value;
        if (!m_channel.getValue(prefix + std::to_string(number), value).done() || value.empty()) {
            break;
        }
        entries.push_back(value);
    }
    return entries;
}

// The order of numbers is not that of texts.
std::vector<std::string> CSettings::keysInOrder() const {
    const auto isFormat = [](const std::string& key) { return keyKind(key) == KeyKind::FormatAt; };
    std::vector<std::string> keys = m_keys;
    const auto first = std::find_if(keys.begin(), keys.end(), isFormat);
    const auto last = std::find_if_not(first, keys.end(), isFormat);
    std::sort(first, last, [](const std::string& a, const std::string& b) {
        return std::pair(a.size(), a) < std::pair(b.size(), b);
    });
    return keys;
}

bool CSettings::hasKey(const std::string& key) const {
    return contains(m_keys, key);
}

bool CSettings::hasCommand(const std::string& command) const {
    return contains(m_commands, command);
}

std::vector<std::string> CSettings::listEntries() const {
    std::vector<std::string> entries;
    if (m_keys.empty()) {
        return entries;
    }
    for (std::size_t i = 1; i <= m_keys.size() + 1; ++i) {
        entries.push_back("feature_" + std::to_string(i));
    }
    for (std::size_t i = 1; i <= m_commands.size() + 1; ++i) {
        entries.push_back("execute_" + std::to_string(i));
    }
    return entries;
}

void CSettings::readLimits(Setting& setting) {
    std::string value;
    if (m_channel.getValue(setting.key + " min", value).done()) {
        setting.minimum = value;
    }
    if (m_channel.getValue(setting.key + " max", value).done()) {
        setting.maximum = value;
    }
}

Setting CSettings::read(const std::string& key, bool withChoices) {
    Setting setting;
    setting.key = normalisedKey(key);
    const KeyKind kind = keyKind(setting.key);
    setting.type = typeOfKind(kind);
    setting.level = keyLevel(setting.key);
    setting.readOnly = isReadOnly(kind);
    try {
        const Reply reply = m_channel.getValue(key, setting.text);
        if (reply.done()) {
            readFacts(setting, withChoices);
        } else {
            setting.problem = reply.message.empty() ? "refused" : reply.message;
        }
    } catch (const AdapterFailure& failure) {
        setting.problem = failure.message;
    }
    return setting;
}

void CSettings::readFacts(Setting& setting, bool withChoices) {
    const KeyKind kind = keyKind(setting.key);
    if (kind == KeyKind::Other && m_channel.propertyType(setting.key) == HOST_PROPERTY_CHOICE) {
        setting.type = SettingType::Choice;
    }
    if (hasLimits(kind)) {
        readLimits(setting);
        setting.automatic = activeAutomatic(setting.key).has_value();
    }
    if (withChoices && (setting.type == SettingType::Choice || kind == KeyKind::FrameRate)) {
        setting.choices = choices(setting.key);
    }
}

Setting CSettings::readKnown(const std::string& key) {
    Setting setting = read(key);
    if (setting.problem.empty()) {
        return setting;
    }
    if (!hasKey(setting.key) && !contains(listEntries(), setting.key)) {
        throw unknownKey(key);
    }
    throw Failure{.code = "refused",
                  .message = key + ": " + setting.problem,
                  .adapterMessage = setting.problem};
}

Setting CSettings::command(const std::string& name) {
    Setting setting;
    setting.key = name;
    setting.type = SettingType::Command;
    setting.level = KeyLevel::Expert;
    return setting;
}

std::optional<std::string> CSettings::automaticOf(const std::string& key) const {
    return autoSwitchFor(key, m_keys);
}

std::optional<std::string> CSettings::activeAutomatic(const std::string& key) {
    std::optional<std::string> guard = automaticOf(key);
    std::string value;
    if (guard && m_channel.getValue(*guard, value).done() && value == "true") {
        return guard;
    }
    return std::nullopt;
}

std::vector<std::string> CSettings::choices(const std::string& key) {
    const auto listedIn = [this](const char* list) {
        std::string value;
        return m_channel.getValue(list, value).done() ? split(value, ',')
                                                      : std::vector<std::string>{};
    };
    switch (keyKind(key)) {
        case KeyKind::PixelFormat:
            return {"Mono8", "Raw8", "RGB24"};
        case KeyKind::VideoNorm:
            return listedIn("videonorms");
        case KeyKind::InputChannel:
            return listedIn("inputchannels");
        case KeyKind::Strings:
        case KeyKind::FrameRate:
            // Whatever type they are said to be of: there are adapters that list them.
            return m_channel.choices(key);
        default:
            if (m_channel.propertyType(key) == HOST_PROPERTY_CHOICE) {
                return m_channel.choices(key);
            }
            return {};
    }
}

Failure CSettings::unknownKey(const std::string& key) const {
    const std::string normal = normalisedKey(key);
    if (hasCommand(normal)) {
        return {.code = "unknown_key",
                .message = "\"" + key + "\" is an action, not a setting",
                .hint = m_hintPrefix + " exec \"" + normal + "\""};
    }
    return {.code = "unknown_key",
            .message = "no setting \"" + key + "\"" + meantText(meantKeys(key, m_keys))};
}

Failure CSettings::unknownCommand(const std::string& command) const {
    const std::string normal = normalisedKey(command);
    if (hasKey(normal)) {
        return {.code = "unknown_command",
                .message = "\"" + command + "\" is a setting, not an action",
                .hint = m_hintPrefix + " get \"" + normal + "\""};
    }
    return {.code = "unknown_command",
            .message = "no action \"" + command + "\"" + meantText(nearNames(command, m_commands))};
}

}  // namespace camhost
