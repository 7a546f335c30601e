// SPDX-License-Identifier: MIT
#include "camhost/camera/adapter_call.h"

namespace camhost {

std::string resultCodeText(std::uint32_t code) {
    std::string text = "0x";
    for (unsigned shift = 32; shift > 0; shift -= 4) {
        text += "0123456789ABCDEF"[(code >> (shift - 4)) & 0xFU];
    }
    return text;
}

void failOnCode(const char* entry, std::uint32_t code) {
    throw AdapterFailure{{.code = "result_code",
                          .message = std::string(entry) +
                                     ": the camera's library failed with result code " +
                                     resultCodeText(code)}};
}

void failOnText(const char* entry, const char* text) {
    throw AdapterFailure{{.code = "exception",
                          .message = std::string(entry) + ": the adapter threw \"" + text + "\"",
                          .adapterMessage = text}};
}

void failOnOther(const char* entry) {
    throw AdapterFailure{
        {.code = "exception",
         .message = std::string(entry) + ": the adapter threw what is no code and no text"}};
}

}  // namespace camhost
