// SPDX-License-Identifier: MIT
// Replaces delayimp.lib: binds a delayed import on its first use. Without the hook for
// failures, the hook's last two notes, and unloading.
#include <windows.h>

#include <delayimp.h>
#include <stddef.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

template <class T>
T* at(size_t place) noexcept {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(&__ImageBase) + place);
}

FARPROC tellHook(unsigned notification, DelayLoadInfo& info) {
    return __pfnDliNotifyHook2 != nullptr ? __pfnDliNotifyHook2(notification, &info) : nullptr;
}

DelayLoadInfo infoOf(const ImgDelayDescr& library, FARPROC* place) noexcept {
    DelayLoadInfo info{};
    info.cb = sizeof(info);
    info.pidd = &library;
    info.ppfn = place;
    info.szDll = at<const char>(library.rvaDLLName);
    const auto function = place - at<FARPROC>(library.rvaIAT);
    const auto entry = at<const IMAGE_THUNK_DATA64>(library.rvaINT)[function].u1.AddressOfData;
    info.dlp.fImportByName = !IMAGE_SNAP_BY_ORDINAL64(entry);
    if (info.dlp.fImportByName) {
        info.dlp.szProcName = at<const char>(entry + offsetof(IMAGE_IMPORT_BY_NAME, Name));
    } else {
        info.dlp.dwOrdinal = static_cast<DWORD>(IMAGE_ORDINAL64(entry));
    }
    return info;
}

// Two threads may load at a time: one reference is kept.
HMODULE moduleOf(DelayLoadInfo& info) {
    auto* place = at<void*>(info.pidd->rvaHmod);
    if (*place != nullptr) {
        return static_cast<HMODULE>(*place);
    }
    auto module = reinterpret_cast<HMODULE>(tellHook(dliNotePreLoadLibrary, info));
    if (module == nullptr) {
        module = ::LoadLibraryA(info.szDll);
    }
    if (module != nullptr && ::InterlockedExchangePointer(place, module) == module) {
        ::FreeLibrary(module);
    }
    return module;
}

FARPROC raise(DWORD error, DelayLoadInfo& info) {
    info.dwLastError = ::GetLastError();
    const auto argument = reinterpret_cast<ULONG_PTR>(&info);
    ::RaiseException(0xC06D0000 | error, 0, 1, &argument);
    return info.pfnCur;
}

}  // namespace

// Called by the linker's stub for the function whose address belongs at `place`.
extern "C" FARPROC WINAPI __delayLoadHelper2(const ImgDelayDescr* library, FARPROC* place) {
    DelayLoadInfo info = infoOf(*library, place);
    if (const FARPROC instead = tellHook(dliStartProcessing, info); instead != nullptr) {
        return instead;
    }
    info.hmodCur = moduleOf(info);
    if (info.hmodCur == nullptr) {
        return raise(ERROR_MOD_NOT_FOUND, info);
    }
    FARPROC found = tellHook(dliNotePreGetProcAddress, info);
    if (found == nullptr) {
        found = ::GetProcAddress(info.hmodCur, info.dlp.szProcName);
    }
    if (found == nullptr) {
        return raise(ERROR_PROC_NOT_FOUND, info);
    }
    *place = found;
    return found;
}
