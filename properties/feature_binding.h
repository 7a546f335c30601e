// SPDX-License-Identifier: MIT
// How settings and commands reach their interface among the device's properties.
// Host thread. Binding stops quietly: what is missing comes back empty.
#pragma once

#include <cstdint>
#include <string_view>

#include "capture/capture_library.h"
#include "properties/interface_kinds.h"

// Empty when the identifier names no item (or element).
DShowLib::smart_com<DShowLib::IVCDPropertyItem> findItem(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items, const GUID& itemId);
DShowLib::smart_com<DShowLib::IVCDPropertyElement> findElement(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItem>& item, const GUID& elementId);

// One interface of one of the item's elements; empty when either is missing.
template <class Interface>
DShowLib::smart_com<Interface> bindInterface(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItem>& item, const GUID& elementId) {
    const auto element = findElement(item, elementId);
    void* found = nullptr;
    if (!element || element->QueryInterface(interfaceId<Interface>(), &found) < 0) {
        return {};
    }
    return DShowLib::smart_com<Interface>(static_cast<Interface*>(found));
}

// Whether all bits of the state are set. Throws a failing result code.
bool isOn(DShowLib::IVCDSwitchProperty& property);
// The same for an item's automatic, which may be missing.
bool isAutomaticOn(const DShowLib::smart_com<DShowLib::IVCDSwitchProperty>& automatic);

// The two refusals that settings and commands share; both return
// HOST_RESULT_FAILURE.
std::int32_t refuseUnavailable(char* message, std::string_view name);
std::int32_t refuseAutomatic(char* message, std::string_view name);
