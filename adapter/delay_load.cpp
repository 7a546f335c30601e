// SPDX-License-Identifier: MIT
#include "adapter/delay_load.h"

// Wants the types of Windows before it.
#include <delayimp.h>

#include <cstdint>

#include "capture/capture_library.h"

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): the linker's helper
// calls the hook without a context.
HMODULE importer = nullptr;
HMODULE libraryModule = nullptr;
HMODULE wholeLibrary = nullptr;  // known to have every function
bool lacksFunction = false;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// The loaded adapter at an offset that its own tables give.
template <class Target>
const Target* atOffset(std::uint64_t offset) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the module's handle is its address.
    return reinterpret_cast<const Target*>(reinterpret_cast<std::uintptr_t>(importer) +
                                           static_cast<std::uintptr_t>(offset));
}

// NOLINTBEGIN(cppcoreguidelines-pro-type-union-access): the linker lays the table out so.
// Whether the library has every function in the import's table of names.
bool hasEveryFunction(const ImgDelayDescr& import) {
    for (const auto* name = atOffset<IMAGE_THUNK_DATA>(import.rvaINT); name->u1.AddressOfData != 0;
         ++name) {
        const auto* function = atOffset<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData);
        // The declared array of one character is the start of the name.
        if (::GetProcAddress(libraryModule, &function->Name[0]) == nullptr) {
            return false;
        }
    }
    return true;
}
// NOLINTEND(cppcoreguidelines-pro-type-union-access)

// Stands in for InitLibrary, which comes before any other call.
bool refuseToStart() {
    return false;
}

FARPROC WINAPI bindCall(unsigned notification, PDelayLoadInfo call) {
    if (notification == dliNotePreLoadLibrary) {
        return reinterpret_cast<FARPROC>(libraryModule);
    }
    if (notification != dliStartProcessing || wholeLibrary == libraryModule) {
        return nullptr;
    }
    if (!hasEveryFunction(*call->pidd)) {
        lacksFunction = true;
        return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&refuseToStart));
    }
    wholeLibrary = libraryModule;
    return nullptr;
}

}  // namespace

extern "C" {
// Asked by the linker's helper at the first call of each delayed function. Constant with
// one of the compilers, variable with the other: as its header declares it.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the helper's name.
decltype(__pfnDliNotifyHook2) __pfnDliNotifyHook2 = &bindCall;
}

void bindDelayedCalls(HMODULE adapter, HMODULE library) noexcept {
    importer = adapter;
    libraryModule = library;
}

bool startCaptureLibrary() {
    lacksFunction = false;
    DShowLib::InitLibrary();
    return !lacksFunction;
}
