// SPDX-License-Identifier: MIT
// What the virtual cameras were called for, and how they stand now.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/control.h"

namespace library_log {

// Each matches an operation as a whole ("Grabber::openDev") or a class ("Grabber::");
// none at all matches everything.
using Filters = std::vector<std::string_view>;

inline bool matches(std::string_view operation, const Filters& filters) {
    return filters.empty() ||
           std::any_of(filters.begin(), filters.end(), [operation](std::string_view filter) {
               return operation == filter ||
                      (filter.ends_with("::") && operation.starts_with(filter));
           });
}

inline std::vector<VirtualCamerasCall> calls(const Filters& filters = {}, std::uint64_t from = 0) {
    std::vector<VirtualCamerasCall> all;
    VirtualCamerasCall call{};
    for (std::uint64_t i = from; virtualCamerasGetCall(i, &call) == 1; ++i) {
        if (matches(call.operation, filters)) {
            all.push_back(call);
        }
    }
    return all;
}

template <class Text>
std::vector<std::string> texts(const Filters& filters, std::uint64_t from, Text&& textOf) {
    std::vector<std::string> all;
    for (const VirtualCamerasCall& call : calls(filters, from)) {
        all.push_back(textOf(call));
    }
    return all;
}

// "MemBuffer::lock()", without the result.
inline std::string invocation(const VirtualCamerasCall& call) {
    return std::string(call.operation) + "(" + call.arguments + ")";
}
inline std::vector<std::string> invocations(const Filters& filters, std::uint64_t from = 0) {
    return texts(filters, from, invocation);
}

// "Grabber::openDev(SIM Mono 23) -> true"; without the arrow where there is no result.
inline std::vector<std::string> lines(const Filters& filters = {}) {
    return texts(filters, 0, [](const VirtualCamerasCall& call) {
        return invocation(call) +
               (call.result[0] != '\0' ? std::string(" -> ") + call.result : std::string());
    });
}

// The operations alone.
inline std::vector<std::string> operations(const Filters& filters = {}) {
    return texts(filters, 0,
                 [](const VirtualCamerasCall& call) { return std::string(call.operation); });
}

inline std::size_t count(std::string_view operation) {
    return calls({operation}).size();
}

// Switching on empties the log.
inline void record() {
    virtualCamerasRecordCalls(1);
}

}  // namespace library_log

// Objects of the library that live now.
inline VirtualCamerasAlive alive() {
    VirtualCamerasAlive counts{};
    virtualCamerasGetAlive(&counts);
    return counts;
}

// How a device's property stands behind the library's back.
inline std::string deviceValue(const char* item, const char* element, const char* interfaceName,
                               const char* camera = "1A2B") {
    char text[512] = {};
    EXPECT_EQ(virtualCamerasReadProperty(camera, item, element, interfaceName, text, sizeof(text)),
              1);
    return text;
}

inline std::int32_t references(const char* item, const char* element, const char* interfaceName,
                               const char* camera = "1A2B") {
    return virtualCamerasInterfaceReferences(camera, item, element, interfaceName);
}

// Locks of all buffers of a camera's ring; negative where it has none.
inline std::int32_t lockedBuffers(const char* camera = "1A2B") {
    std::int32_t locked = 0;
    for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
        locked += virtualCamerasBufferLocks(camera, buffer);
    }
    return locked;
}
