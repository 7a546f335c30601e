// SPDX-License-Identifier: MIT
#include "host/adapter_call.h"

namespace camhost {

std::string resultCodeText(std::uint32_t code) {
    std::string text = "0x";
    for (unsigned shift = 32; shift > 0; shift -= 4) {
        text += "0123456789ABCDEF"[(code >> (shift - 4)) & 0xFU];
    }
    return text;
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
