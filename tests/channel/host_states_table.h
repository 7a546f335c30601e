// SPDX-License-Identifier: MIT
// What every call of the host gives in every state of a device.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/host_memory.h"
#include "velmora/host_blocks.h"

namespace host_states {

enum class State { noDevice, stopped, live, lost };

enum class Entry {
    setCameraParameters,
    getImageInfo,
    waitFrame,
    copyFrame,
    startAcquisition,
    stopAcquisition,
    executeCommand,
    getPropertyValue,
    setPropertyValue,
    getPropertyName,
    getPropertyType,
    getPropertyChoice,
    getPropertyAttribute,
    closeChannel
};

// Memory for every kind of output.
struct HostSide {
    CHostText text;
    CHostText value;
    CHostStatus status;
    CHostMemory frame{32};
    ImageInfo image{};
    CameraParameterBlock block{};
};

// "-" where a buffer or word is left as it was.
struct Expectation {
    State state;
    Entry entry;
    std::string result;  // the returned number, or "throws CODE"
    std::string text;
    std::string value;
    std::string status;
    std::vector<std::string> calls;  // of the library, all of them
};

const std::vector<Expectation>& table();
const char* stateName(State state);
const char* entryName(Entry entry);

inline void PrintTo(const Expectation& expectation, std::ostream* out) {
    *out << stateName(expectation.state) << entryName(expectation.entry);
}

}  // namespace host_states
