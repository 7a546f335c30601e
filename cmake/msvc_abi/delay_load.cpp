// SPDX-License-Identifier: MIT
// Replaces delayimp.lib: binds the delayed imports of the image that it is linked into.
#include "cmake/msvc_abi/delayimp.h"

#include <stddef.h>

extern "C" const IMAGE_DOS_HEADER __ImageBase;

namespace {

const char* imageStart() noexcept {
    return reinterpret_cast<const char*>(&__ImageBase);
}

template <class T>
T* at(DWORD place) noexcept {
    return reinterpret_cast<T*>(const_cast<char*>(imageStart()) + place);
}

// Loaded once, and for good. Two threads may load at a time: one reference is kept.
HMODULE moduleOf(const ImgDelayDescr& descriptor) noexcept {
    auto* place = at<void*>(descriptor.rvaHmod);
    if (*place != nullptr) {
        return static_cast<HMODULE>(*place);
    }
    const HMODULE module = ::LoadLibraryA(at<const char>(descriptor.rvaDLLName));
    if (module != nullptr && ::InterlockedExchangePointer(place, module) == module) {
        ::FreeLibrary(module);
    }
    return module;
}

const char* nameOf(const ImgDelayDescr& descriptor, size_t function) noexcept {
    const auto entry = at<const IMAGE_THUNK_DATA64>(descriptor.rvaINT)[function].u1.AddressOfData;
    if (IMAGE_SNAP_BY_ORDINAL64(entry)) {
        return reinterpret_cast<const char*>(IMAGE_ORDINAL64(entry));
    }
    return at<const char>(static_cast<DWORD>(entry) + offsetof(IMAGE_IMPORT_BY_NAME, Name));
}

[[noreturn]] void raiseFailure(DWORD error, const char* library, const char* function) {
    const ULONG_PTR names[] = {reinterpret_cast<ULONG_PTR>(library),
                               reinterpret_cast<ULONG_PTR>(function)};
    ::RaiseException(delayLoadFailure(error), 0, 2, names);
    ::TerminateProcess(::GetCurrentProcess(), delayLoadFailure(error));
    __builtin_unreachable();
}

const ImgDelayDescr* descriptorOf(const char* library) noexcept {
    const auto* headers = at<const IMAGE_NT_HEADERS64>(__ImageBase.e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT];
    if (directory.VirtualAddress == 0) {
        return nullptr;
    }
    const auto* descriptor = at<const ImgDelayDescr>(directory.VirtualAddress);
    while (descriptor->rvaDLLName != 0 &&
           ::lstrcmpiA(at<const char>(descriptor->rvaDLLName), library) != 0) {
        ++descriptor;
    }
    return descriptor->rvaDLLName != 0 ? descriptor : nullptr;
}

}  // namespace

FARPROC WINAPI __delayLoadHelper2(const ImgDelayDescr* descriptor, FARPROC* place) {
    const auto function = static_cast<size_t>(place - at<FARPROC>(descriptor->rvaIAT));
    const char* library = at<const char>(descriptor->rvaDLLName);
    const char* name = nameOf(*descriptor, function);
    const HMODULE module = moduleOf(*descriptor);
    if (module == nullptr) {
        raiseFailure(ERROR_MOD_NOT_FOUND, library, name);
    }
    const FARPROC found = ::GetProcAddress(module, name);
    if (found == nullptr) {
        raiseFailure(ERROR_PROC_NOT_FOUND, library, name);
    }
    *place = found;
    return found;
}

HRESULT WINAPI __HrLoadAllImportsForDll(LPCSTR library) {
    const ImgDelayDescr* descriptor = descriptorOf(library);
    if (descriptor == nullptr) {
        return static_cast<HRESULT>(delayLoadFailure(ERROR_MOD_NOT_FOUND));
    }
    const HMODULE module = moduleOf(*descriptor);
    if (module == nullptr) {
        return static_cast<HRESULT>(delayLoadFailure(ERROR_MOD_NOT_FOUND));
    }
    auto* places = at<FARPROC>(descriptor->rvaIAT);
    const auto* names = at<const IMAGE_THUNK_DATA64>(descriptor->rvaINT);
    for (size_t i = 0; names[i].u1.AddressOfData != 0; ++i) {
        const FARPROC found = ::GetProcAddress(module, nameOf(*descriptor, i));
        if (found == nullptr) {
            return static_cast<HRESULT>(delayLoadFailure(ERROR_PROC_NOT_FOUND));
        }
        places[i] = found;
    }
    return S_OK;
}
