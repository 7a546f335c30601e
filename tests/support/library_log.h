// SPDX-License-Identifier: MIT
// Readers of the virtual cameras' call log.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/control.h"

namespace library_log {

// "Grabber::openDev(SIM Mono 23) -> true", "MemBuffer::lock()".
inline std::string line(const VirtualCamerasCall& call) {
    std::string text = std::string(call.operation) + "(" + call.arguments + ")";
    if (call.result[0] != '\0') {
        text += std::string(" -> ") + call.result;
    }
    return text;
}

inline std::vector<VirtualCamerasCall> calls(std::uint64_t from = 0) {
    std::vector<VirtualCamerasCall> all;
    VirtualCamerasCall call{};
    for (std::uint64_t i = from; virtualCamerasGetCall(i, &call) == 1; ++i) {
        all.push_back(call);
    }
    return all;
}

// A filter matches an operation as a whole ("Grabber::openDev"), a class
// ("Grabber::"), or everything (no filter at all).
inline bool matches(std::string_view operation, std::initializer_list<std::string_view> filters) {
    if (filters.size() == 0) {
        return true;
    }
    for (const std::string_view filter : filters) {
        const bool isClass = filter.size() > 2 && filter.substr(filter.size() - 2) == "::";
        if (operation == filter || (isClass && operation.substr(0, filter.size()) == filter)) {
            return true;
        }
    }
    return false;
}

inline std::vector<std::string> lines(std::initializer_list<std::string_view> filters = {}) {
    std::vector<std::string> texts;
    for (const VirtualCamerasCall& call : calls()) {
        if (matches(call.operation, filters)) {
            texts.push_back(line(call));
        }
    }
    return texts;
}

// The operations alone, in order.
inline std::vector<std::string> operations(std::initializer_list<std::string_view> filters = {}) {
    std::vector<std::string> texts;
    for (const VirtualCamerasCall& call : calls()) {
        if (matches(call.operation, filters)) {
            texts.emplace_back(call.operation);
        }
    }
    return texts;
}

inline std::size_t count(std::string_view operation) {
    return lines({operation}).size();
}

// Switching on empties the log.
inline void record() {
    virtualCamerasRecordCalls(1);
}

}  // namespace library_log
