// SPDX-License-Identifier: MIT
#include "platform/text.h"
#include "properties/property.h"
#include "velmora/host_blocks.h"

CFeatures::CFeatures(std::string_view label, std::string_view value)
    : CProperty(label), m_value(value) {}

std::int32_t CFeatures::getValue(char* /*message*/, char* value) {
    writeText(value, 255, m_value);
    return HOST_RESULT_SUCCESS;
}

std::int32_t CFeatures::setValue(char* message, std::string_view /*value*/) {
    writeText(message, 255, "This property is read only.");
    return HOST_RESULT_FAILURE;
}
