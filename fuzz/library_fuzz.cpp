// SPDX-License-Identifier: MIT
// A capture library that answers anything, and a host that calls anything. The first
// bytes of the input describe the library; each call of the host then brings the few
// answers that are not as usual.
#include <cstddef>
#include <cstdint>

#include "fuzz/any_library/host.h"
#include "fuzz/any_library/settings_end.h"
#include "fuzz/any_library/world.h"
#include "fuzz/input/fuzz_input.h"
#include "platform/windows.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const BOOL isLoaded = DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    require(isLoaded == TRUE, "the adapter can be loaded");
    any_library::answers().begin({data, size});
    any_library::beginWorld();
    {
        any_library::CHost host;
        host.run();
    }
    any_library::endSettings();
    any_library::endWorld();
    return 0;
}
