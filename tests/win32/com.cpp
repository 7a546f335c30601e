// SPDX-License-Identifier: MIT
// COM's start and stop per thread, task memory, texts and identifiers.
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <map>

#include "tests/win32/call_log.h"
#include "tests/win32/win32_log.h"

using win32::detail::injected;
using win32::detail::pointerText;
using win32::detail::record;

namespace {

// A thread's COM: how many starts are open, and which apartment the first chose.
struct Apartment {
    std::int32_t starts = 0;
    DWORD kind = COINIT_MULTITHREADED;
};

struct State {
    std::mutex mutex;
    std::map<DWORD, Apartment> apartments;
    std::uint32_t unbalancedStops = 0;
};

// Outlives every other static object, whichever asks last.
State& state() {
    static State* const instance = new State;
    return *instance;
}

HRESULT start(const char* function, DWORD kind) {
    const auto laidDown = injected(function);
    const std::lock_guard guard(state().mutex);
    Apartment& apartment = state().apartments[GetCurrentThreadId()];
    if (laidDown && FAILED(*laidDown)) {
        return static_cast<HRESULT>(*laidDown);
    }
    if (!laidDown && apartment.starts != 0 && apartment.kind != kind) {
        return RPC_E_CHANGED_MODE;
    }
    if (apartment.starts == 0) {
        apartment.kind = kind;
    }
    ++apartment.starts;
    if (laidDown) {
        return static_cast<HRESULT>(*laidDown);
    }
    return apartment.starts == 1 ? S_OK : S_FALSE;
}

void stop() {
    const std::lock_guard guard(state().mutex);
    Apartment& apartment = state().apartments[GetCurrentThreadId()];
    if (apartment.starts == 0) {
        ++state().unbalancedStops;
        return;
    }
    --apartment.starts;
}

// The bytes of a BSTR lie after its length, as on Windows, kept aligned.
struct BstrHeader {
    std::uint32_t unused[3];
    std::uint32_t bytes;
};
static_assert(sizeof(BstrHeader) == 16);

BstrHeader* headerOf(BSTR text) {
    return reinterpret_cast<BstrHeader*>(text) - 1;
}

}  // namespace

HRESULT CoInitializeEx(LPVOID reserved, DWORD apartment) {
    record("CoInitializeEx", pointerText(reserved) + ", " + std::to_string(apartment));
    return start("CoInitializeEx", apartment & COINIT_APARTMENTTHREADED);
}

void CoUninitialize() {
    record("CoUninitialize", "");
    stop();
}

HRESULT OleInitialize(LPVOID reserved) {
    record("OleInitialize", pointerText(reserved));
    return start("OleInitialize", COINIT_APARTMENTTHREADED);
}

void OleUninitialize() {
    record("OleUninitialize", "");
    stop();
}

LPVOID CoTaskMemAlloc(SIZE_T size) {
    void* memory = injected("CoTaskMemAlloc") == 0 ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory != nullptr) {
        win32::detail::taskMemory.add();
    }
    return memory;
}

void CoTaskMemFree(LPVOID memory) {
    if (memory != nullptr) {
        win32::detail::taskMemory.remove();
    }
    std::free(memory);
}

BSTR SysAllocString(const OLECHAR* text) {
    return text == nullptr ? nullptr
                           : SysAllocStringLen(text, static_cast<UINT>(std::wcslen(text)));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    const std::size_t bytes = length * sizeof(OLECHAR);
    void* memory = injected("SysAllocString") == 0
                       ? nullptr
                       : std::malloc(sizeof(BstrHeader) + bytes + sizeof(OLECHAR));
    if (memory == nullptr) {
        return nullptr;
    }
    auto* header = static_cast<BstrHeader*>(memory);
    header->bytes = static_cast<std::uint32_t>(bytes);
    auto* result = reinterpret_cast<BSTR>(header + 1);
    if (text != nullptr && length != 0) {
        std::memcpy(result, text, bytes);
    }
    result[length] = L'\0';
    win32::detail::bstrTexts.add();
    return result;
}

void SysFreeString(BSTR text) {
    if (text != nullptr) {
        win32::detail::bstrTexts.remove();
        std::free(headerOf(text));
    }
}

UINT SysStringLen(BSTR text) {
    return text == nullptr ? 0 : static_cast<UINT>(headerOf(text)->bytes / sizeof(OLECHAR));
}

HRESULT StringFromCLSID(REFCLSID identifier, LPOLESTR* text) {
    constexpr std::size_t characters = 38;
    wchar_t formatted[characters + 1];
    const std::uint8_t* tail = identifier.Data4;
    std::swprintf(formatted, characters + 1, L"{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  identifier.Data1, identifier.Data2, identifier.Data3, tail[0], tail[1], tail[2],
                  tail[3], tail[4], tail[5], tail[6], tail[7]);
    record("StringFromCLSID", win32::detail::utf8(formatted));
    *text = nullptr;
    if (const auto result = injected("StringFromCLSID"); result && FAILED(*result)) {
        return static_cast<HRESULT>(*result);
    }
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof(formatted)));
    if (*text == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::memcpy(*text, formatted, sizeof(formatted));
    return S_OK;
}

namespace win32 {

std::int32_t comBalance() {
    return comBalance(GetCurrentThreadId());
}

std::int32_t comBalance(std::uint32_t threadId) {
    const std::lock_guard guard(state().mutex);
    const auto found = state().apartments.find(threadId);
    return found == state().apartments.end() ? 0 : found->second.starts;
}

std::uint32_t unbalancedComStops() {
    const std::lock_guard guard(state().mutex);
    return state().unbalancedStops;
}

}  // namespace win32
