// SPDX-License-Identifier: MIT
// What an event of a rig does: each kind with the keys that it takes and their reader.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/rig/rig.h"
#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

// What the readers of an event's keys need to know.
struct EventPlace {
    CStrictTable& table;
    const RigCamera& camera;
    const std::size_t cameras;
    RigEvent& event;  // for the reader of an action, with its start read already

    bool has(std::string_view key) const { return table.find(key) != nullptr; }
    // Throws the rig's error where the key is not there.
    const toml::node& needed(std::string_view key) const;
    // Throws it where one of the keys is there: they go with something that is not.
    void refuse(std::initializer_list<std::string_view> keys, const std::string& why) const;
};

struct EventKind {
    std::string_view name;
    bool lasts;  // takes "for"
    std::vector<std::string_view> keys;
    RigAction (*read)(const EventPlace& place);
};

// In the order in which a refusal lists them.
const std::vector<EventKind>& eventKinds();

}  // namespace virtual_cameras
