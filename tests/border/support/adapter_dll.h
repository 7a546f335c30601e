// SPDX-License-Identifier: MIT
// The adapter's DLL and its one export, reached as a host reaches them.
#pragma once

#include <cstdint>
#include <string>

#include "platform/windows.h"
#include "velmora/video_channel_record.h"

class CAdapterDll {
public:
    explicit CAdapterDll(const std::wstring& file);
    CAdapterDll(const CAdapterDll&) = delete;
    CAdapterDll& operator=(const CAdapterDll&) = delete;
    ~CAdapterDll() { unload(); }

    bool isLoaded() const noexcept { return m_getVideoChannel != nullptr; }
    HMODULE module() const noexcept { return m_module; }
    std::int32_t getVideoChannel(std::int32_t index, VideoChannelRecord* record) const {
        return m_getVideoChannel(nullptr, index, record);
    }
    void unload() noexcept;

private:
    HMODULE m_module;
    GetVideoChannelEntry m_getVideoChannel = nullptr;
};

bool isLibraryLoaded();
