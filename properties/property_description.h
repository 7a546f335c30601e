// SPDX-License-Identifier: MIT
// How settings are described to the host: told by the key alone, no setting is asked.
// Host thread. Text buffers are the host's: 256 bytes, or null for none.
#pragma once

#include <cstdint>
#include <string_view>

#include "capture/capture_library.h"
#include "properties/property_tables.h"

// The listed key at the index, counted from 0 without gaps; HOST_RESULT_FAILURE and the
// empty text past the last.
std::int32_t nameProperty(const CPropertyTables& tables, std::int32_t index, char* name);

// One of HOST_PROPERTY_...; an unknown key is a text.
std::uint32_t kindOfProperty(std::string_view key) noexcept;

// The choice at the index, of a switch or of the video format; HOST_RESULT_FAILURE past
// the last, and with a message for any other key. A negative index of the video format
// throws std::out_of_range.
std::int32_t chooseFrom(char* errorText, DShowLib::Grabber& grabber, std::string_view key,
                        std::int32_t index, char* choice);

// Fixed texts for the attributes 1 to 3; any other writes nothing.
void describeAttribute(std::uint32_t attribute, char* text) noexcept;
