// SPDX-License-Identifier: MIT
#include "bench/win32/adapter_module.h"

#include <bit>
#include <stdexcept>

namespace bench {

CAdapterModule::CAdapterModule() : m_module(::LoadLibraryW(L"velmora_adapter.dll")) {
    if (m_module == nullptr) {
        throw std::runtime_error("velmora_adapter.dll cannot be loaded");
    }
    m_entry = std::bit_cast<GetVideoChannelEntry>(::GetProcAddress(m_module, "GetVideoChannel"));
}

CAdapterModule::~CAdapterModule() {
    ::FreeLibrary(m_module);
}

}  // namespace bench
