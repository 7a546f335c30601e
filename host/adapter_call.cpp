// SPDX-License-Identifier: MIT
#include "host/adapter_call.h"

#include <cstdio>

namespace camhost {

std::string resultCodeText(std::uint32_t code) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "0x%08X", static_cast<unsigned>(code));
    return buffer;
}

void failOnCode(const char* entry, std::uint32_t code) {
    throw Failure{ExitCode::Refused,
                  "result_code",
                  std::string(entry) + ": the camera's library failed with result code " +
                      resultCodeText(code),
                  {},
                  {}};
}

void failOnText(const char* entry, const char* text) {
    throw Failure{ExitCode::Refused,
                  "exception",
                  std::string(entry) + ": the adapter threw \"" + text + "\"",
                  text,
                  {}};
}

}  // namespace camhost
