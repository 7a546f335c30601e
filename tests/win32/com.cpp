// SPDX-License-Identifier: MIT
// COM's start and stop per thread, task memory, texts and identifiers.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <map>
#include <mutex>

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

struct ComState {
    std::mutex mutex;
    std::map<DWORD, Apartment> apartments;
    std::uint32_t unbalancedStops = 0;
};

// Outlives every other static object, whichever asks last.
ComState& comState() {
    static ComState* const instance = new ComState;
    return *instance;
}

HRESULT start(const char* function, DWORD kind) {
    const auto laidDown = injected(function);
    const std::lock_guard guard(comState().mutex);
    Apartment& apartment = comState().apartments[GetCurrentThreadId()];
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
    const std::lock_guard guard(comState().mutex);
    Apartment& apartment = comState().apartments[GetCurrentThreadId()];
    if (apartment.starts == 0) {
        ++comState().unbalancedStops;
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

// The registry form of an identifier, digit by digit: every binding of a property asks
// for two of them.
class RegistryText {
public:
    explicit RegistryText(REFCLSID identifier) {
        add('{');
        addNumber(identifier.Data1, 8);
        add('-');
        addNumber(identifier.Data2, 4);
        add('-');
        addNumber(identifier.Data3, 4);
        add('-');
        for (std::size_t i = 0; i < sizeof(identifier.Data4); ++i) {
            if (i == 2) {
                add('-');
            }
            addNumber(identifier.Data4[i], 2);
        }
        add('}');
    }

    std::string_view view() const { return {m_text, m_size}; }

private:
    void add(char character) { m_text[m_size++] = character; }
    void addNumber(std::uint32_t number, int digits) {
        for (int place = digits - 1; place >= 0; --place) {
            add("0123456789ABCDEF"[number >> (4 * place) & 0xFU]);
        }
    }

    char m_text[38];
    std::size_t m_size = 0;
};

BstrHeader* headerOf(BSTR text) {
    return reinterpret_cast<BstrHeader*>(text) - 1;
}

}  // namespace

HRESULT CoInitializeEx(LPVOID reserved, DWORD apartment) {
    const win32::detail::CInside inside;
    record("CoInitializeEx", pointerText(reserved) + ", " + std::to_string(apartment));
    return start("CoInitializeEx", apartment & COINIT_APARTMENTTHREADED);
}

void CoUninitialize() {
    const win32::detail::CInside inside;
    record("CoUninitialize", "");
    stop();
}

HRESULT OleInitialize(LPVOID reserved) {
    const win32::detail::CInside inside;
    record("OleInitialize", pointerText(reserved));
    return start("OleInitialize", COINIT_APARTMENTTHREADED);
}

void OleUninitialize() {
    const win32::detail::CInside inside;
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
    const win32::detail::CInside inside;
    const RegistryText formatted(identifier);
    record("StringFromCLSID", formatted.view());
    *text = nullptr;
    if (const auto result = injected("StringFromCLSID"); result && FAILED(*result)) {
        return static_cast<HRESULT>(*result);
    }
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc((formatted.view().size() + 1) * sizeof(OLECHAR)));
    if (*text == nullptr) {
        return E_OUTOFMEMORY;
    }
    *std::copy(formatted.view().begin(), formatted.view().end(), *text) = L'\0';
    return S_OK;
}

namespace win32 {

std::int32_t comBalance() {
    return comBalance(GetCurrentThreadId());
}

std::int32_t comBalance(std::uint32_t threadId) {
    const std::lock_guard guard(comState().mutex);
    const auto found = comState().apartments.find(threadId);
    return found == comState().apartments.end() ? 0 : found->second.starts;
}

std::uint32_t unbalancedComStops() {
    const std::lock_guard guard(comState().mutex);
    return comState().unbalancedStops;
}

}  // namespace win32
