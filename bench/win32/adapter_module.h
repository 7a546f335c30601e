// SPDX-License-Identifier: MIT
// The adapter's DLL beside the program, loaded for as long as the object lives.
#pragma once

#include "platform/windows.h"
#include "velmora/video_channel_record.h"

namespace bench {

class CAdapterModule {
public:
    CAdapterModule();
    CAdapterModule(const CAdapterModule&) = delete;
    CAdapterModule& operator=(const CAdapterModule&) = delete;
    ~CAdapterModule();

    GetVideoChannelEntry entry() const { return m_entry; }

private:
    HMODULE m_module;
    GetVideoChannelEntry m_entry;
};

}  // namespace bench
