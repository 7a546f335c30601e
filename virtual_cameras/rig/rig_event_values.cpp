// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_event_values.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "virtual_cameras/rig/near_name.h"
#include "virtual_cameras/rig/operations.h"

namespace virtual_cameras {

namespace {

constexpr double longestSeconds = 1e9;
constexpr std::int64_t mostCounted = 1'000'000'000;

}  // namespace

std::size_t indexAmong(const std::vector<std::string_view>& names, const toml::node& node,
                       std::string_view what) {
    const std::string text = textOf(node, what);
    auto found = std::find(names.begin(), names.end(), text);
    if (found == names.end()) {
        found = std::find_if(names.begin(), names.end(),
                             [&](std::string_view name) { return sameIgnoringCase(name, text); });
    }
    if (found != names.end()) {
        return static_cast<std::size_t>(found - names.begin());
    }
    std::string all;
    for (const std::string_view name : names) {
        all += (all.empty() ? "" : ", ") + std::string(name);
    }
    failAt(node.source(), std::string(what) +
                              (all.empty() ? " has no choices here" : " must be one of: " + all) +
                              meantText(text, names));
}

std::uint64_t countOf(const toml::node& node, std::string_view what, std::int64_t least) {
    const auto* value = node.as_integer();
    if (value == nullptr || value->get() < least || value->get() > mostCounted) {
        failAt(node.source(), std::string(what) + " must be a whole number from " +
                                  std::to_string(least) + " to " + std::to_string(mostCounted));
    }
    return static_cast<std::uint64_t>(value->get());
}

std::uint64_t secondsOf(const toml::node& node, std::string_view what, double least) {
    const double seconds = numberOf(node, what);
    if (!(seconds >= least) || seconds > longestSeconds) {
        failAt(node.source(),
               std::string(what) + (least > 0.0 ? " must be at least 0.001 seconds"
                                                : " must be a number of seconds from 0"));
    }
    return static_cast<std::uint64_t>(std::llround(seconds * nanosecondsPerSecond));
}

double rateOf(const toml::node& node) {
    const double rate = numberOf(node, "rate");
    if (!(rate > 0.0) || rate > 1.0 / shortestSeconds) {
        failAt(node.source(), "rate must be above 0 and at most 1000 per second");
    }
    return rate;
}

std::string operationOf(const toml::node& node, std::string_view what) {
    std::string text = textOf(node, what);
    std::string hint;
    for (const std::string_view operation : operations) {
        if (operation == text) {
            return text;
        }
        // Its member alone is no name, but tells what was meant.
        if (operation.ends_with("::" + text) && hint.empty()) {
            hint = "; did you mean \"" + std::string(operation) + "\"?";
        }
    }
    const std::vector<std::string_view> all(std::begin(operations), std::end(operations));
    failAt(node.source(),
           "there is no operation \"" + text + '"' + (hint.empty() ? meantText(text, all) : hint));
}

}  // namespace virtual_cameras
