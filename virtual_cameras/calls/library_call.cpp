// SPDX-License-Identifier: MIT
#include "virtual_cameras/calls/library_call.h"

#include <stdexcept>

#include "platform/text.h"
#include "virtual_cameras/number_text.h"

namespace virtual_cameras {

std::string textOf(bool value) {
    return value ? "true" : "false";
}

std::string textOf(double value) {
    return numberText(value);
}

std::string textOf(std::int64_t value) {
    return numberText(value);
}

std::string textOf(std::int32_t value) {
    return numberText(value);
}

std::string textOf(std::uint32_t value) {
    return numberText(value);
}

std::string textOf(const char* value) {
    return value != nullptr ? value : "null";
}

std::string textOf(std::string_view value) {
    return std::string(value);
}

std::string resultCodeText(HRESULT code) {
    const std::string digits = hexadecimalText(static_cast<std::uint32_t>(code));
    return "0x" + std::string(8 - digits.size(), '0') + digits;
}

thread_local constinit std::uint32_t CCallDepth::s_depth = 0;

void CLibraryCall::throwIfAsked() {
    switch (m_fault->kind) {
        case VIRTUAL_CAMERAS_FAIL_THROW:
            throwText(m_fault->text);
        case VIRTUAL_CAMERAS_FAIL_THROW_CODE:
            recordThrown(resultCodeText(m_fault->code));
            throw m_fault->code;
        case VIRTUAL_CAMERAS_FAIL_THROW_STANDARD:
            recordThrown(m_fault->text);
            throw std::runtime_error(m_fault->text);
        default:
            break;
    }
}

void CLibraryCall::recordThrown(std::string_view what) {
    if (m_recorded) {
        callLog().add(m_camera, m_operation, m_arguments, "throw " + std::string(what));
    }
}

// NOLINTNEXTLINE(readability-non-const-parameter)
void CLibraryCall::throwText(char* text) {
    recordThrown(text);
    // As the library's users catch it.
    throw text;  // NOLINT(misc-throw-by-value-catch-by-reference)
}

}  // namespace virtual_cameras
