// SPDX-License-Identifier: MIT
// One camera as a host of the adapter's DLL holds it.
#pragma once

#include <cstdint>

#include "tests/border/support/adapter_dll.h"
#include "tests/support/host_calls.h"

class CHostChannel : public CRecordHost {
public:
    CHostChannel() = default;
    // The record of camera `index`, which must be there.
    CHostChannel(const CAdapterDll& adapter, std::int32_t index);

    // Waits until a frame has come; some waits may time out. False after ten.
    bool waitForFrame() const;
};
