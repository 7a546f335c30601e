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

// As GetProcAddress takes it: the name, or in place of a pointer the ordinal of a function
// that its library exports without a name.
const char* nameOf(const IMAGE_THUNK_DATA& function) {
    if (IMAGE_SNAP_BY_ORDINAL64(function.u1.Ordinal)) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): see above.
        return reinterpret_cast<const char*>(
            static_cast<std::uintptr_t>(IMAGE_ORDINAL64(function.u1.Ordinal)));
    }
    // The declared array of one character is the start of the name.
    return &atOffset<IMAGE_IMPORT_BY_NAME>(function.u1.AddressOfData)->Name[0];
}

// Whether the library has every function in the import's table of names.
bool hasEveryFunction(const ImgDelayDescr& import) {
    for (const auto* function = atOffset<IMAGE_THUNK_DATA>(import.rvaINT);
         function->u1.AddressOfData != 0; ++function) {
        if (::GetProcAddress(libraryModule, nameOf(*function)) == nullptr) {
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
