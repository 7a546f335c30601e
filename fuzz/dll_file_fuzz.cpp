// SPDX-License-Identifier: MIT
// Any bytes as the file of a library: what is told of it is bounded.
#include "camhost/doctor/dll_file.h"

#include "fuzz/input/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string reason;
    const auto dll = camhost::readDllFile({data, size}, reason);
    require(dll.has_value() == reason.empty(), "a refusal has a reason, and nothing else has");
    if (!dll) {
        return 0;
    }
    require(dll->exports.size() <= 1U << 17U, "exports are bounded");
    require(dll->imports.size() <= 1024 && dll->delayedImports.size() <= 1024,
            "imports are bounded");
    for (const camhost::DllImport& import : dll->delayedImports) {
        require(import.library.size() < size, "a name lies in the file");
        (void)camhost::kindOfNames(import.functions);
    }
    return 0;
}
