// SPDX-License-Identifier: MIT
#include "tests/border/support/adapter_dll.h"

#include <bit>

CAdapterDll::CAdapterDll(const std::wstring& file) : m_module(::LoadLibraryW(file.c_str())) {
    if (m_module != nullptr) {
        m_getVideoChannel =
            std::bit_cast<GetVideoChannelEntry>(::GetProcAddress(m_module, "GetVideoChannel"));
    }
}

void CAdapterDll::unload() noexcept {
    if (m_module != nullptr) {
        ::FreeLibrary(m_module);
        m_module = nullptr;
        m_getVideoChannel = nullptr;
    }
}

bool isLibraryLoaded() {
    return ::GetModuleHandleW(L"ORV_CAPLB11_x64.dll") != nullptr;
}
