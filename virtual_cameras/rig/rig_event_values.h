// SPDX-License-Identifier: MIT
// What the texts and numbers of a rig's event may be. Each reader throws the rig's error, with
// line and column, for what it does not take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

// The shortest interval, and the shortest time that anything lasts.
constexpr double shortestSeconds = 0.001;
constexpr double nanosecondsPerSecond = 1e9;

template <class Entry>
std::vector<std::string_view> namesOf(const std::vector<Entry>& entries) {
    std::vector<std::string_view> names;
    names.reserve(entries.size());
    for (const Entry& entry : entries) {
        names.push_back(entry.name);
    }
    return names;
}

// The place of the text, in letters of any case, among `names`.
std::size_t indexAmong(const std::vector<std::string_view>& names, const toml::node& node,
                       std::string_view what);
// From `least` to 10^9.
std::uint64_t countOf(const toml::node& node, std::string_view what, std::int64_t least);
// Seconds from `least` to 10^9, in nanoseconds.
std::uint64_t secondsOf(const toml::node& node, std::string_view what, double least);
// Above 0 and at most 1000, per second.
double rateOf(const toml::node& node);
// The whole name of an operation of the capture library, such as "Grabber::startLive".
std::string operationOf(const toml::node& node, std::string_view what);

}  // namespace virtual_cameras
