// SPDX-License-Identifier: MIT
// Replaces delayimp.lib: binds a delayed import on its first use. Without the hooks, and
// without unloading; what is raised carries two names where Microsoft's carries more.
#include <stddef.h>

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

// The tables count all places from the start of the image.
template <class T>
T* at(size_t place) noexcept {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(&__ImageBase) + place);
}

// Loaded once, and for good. Two threads may load at a time: one reference is kept.
HMODULE moduleOf(const IMAGE_DELAYLOAD_DESCRIPTOR& library) noexcept {
    auto* place = at<void*>(library.ModuleHandleRVA);
    if (*place != nullptr) {
        return static_cast<HMODULE>(*place);
    }
    const HMODULE module = ::LoadLibraryA(at<const char>(library.DllNameRVA));
    if (module != nullptr && ::InterlockedExchangePointer(place, module) == module) {
        ::FreeLibrary(module);
    }
    return module;
}

const char* nameOf(const IMAGE_DELAYLOAD_DESCRIPTOR& library, size_t function) noexcept {
    const auto* names = at<const IMAGE_THUNK_DATA64>(library.ImportNameTableRVA);
    const auto entry = names[function].u1.AddressOfData;
    return IMAGE_SNAP_BY_ORDINAL64(entry)
               ? reinterpret_cast<const char*>(IMAGE_ORDINAL64(entry))
               : at<const char>(entry + offsetof(IMAGE_IMPORT_BY_NAME, Name));
}

void raise(DWORD error, const char* library, const char* function) {
    const ULONG_PTR names[] = {reinterpret_cast<ULONG_PTR>(library),
                               reinterpret_cast<ULONG_PTR>(function)};
    ::RaiseException(0xC06D0000 | error, 0, 2, names);
}

}  // namespace

// Called by the linker's stub for the function whose address belongs at `place`.
extern "C" FARPROC WINAPI __delayLoadHelper2(const IMAGE_DELAYLOAD_DESCRIPTOR* library,
                                             FARPROC* place) {
    const auto function = static_cast<size_t>(place - at<FARPROC>(library->ImportAddressTableRVA));
    const char* libraryName = at<const char>(library->DllNameRVA);
    const char* name = nameOf(*library, function);
    const HMODULE module = moduleOf(*library);
    if (module == nullptr) {
        raise(ERROR_MOD_NOT_FOUND, libraryName, name);
    }
    const FARPROC found = ::GetProcAddress(module, name);
    if (found == nullptr) {
        raise(ERROR_PROC_NOT_FOUND, libraryName, name);
    }
    *place = found;
    return found;
}
