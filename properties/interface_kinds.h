// SPDX-License-Identifier: MIT
// The kinds of interface that an element of a device property may offer.
#pragma once

#include <string_view>
#include <tuple>

#include "capture/capture_library.h"
#include "properties/property_keys.h"

template <class Interface>
struct InterfaceKind {
    const GUID* id;
    std::string_view suffix;  // the end of the keys of this kind
};

// One row for each kind. A setting or command binds through the row of its interface,
// and the property tables add what each row stands for: neither compiles without.
inline constexpr std::tuple interfaceKinds = {
    InterfaceKind<DShowLib::IVCDRangeProperty>{&DShowLib::IID_IVCDRangeProperty, rangeSuffix},
    InterfaceKind<DShowLib::IVCDSwitchProperty>{&DShowLib::IID_IVCDSwitchProperty, switchSuffix},
    InterfaceKind<DShowLib::IVCDButtonProperty>{&DShowLib::IID_IVCDButtonProperty, ""},
    InterfaceKind<DShowLib::IVCDMapStringsProperty>{&DShowLib::IID_IVCDMapStringsProperty,
                                                    stringsSuffix},
    InterfaceKind<DShowLib::IVCDAbsoluteValueProperty>{&DShowLib::IID_IVCDAbsoluteValueProperty,
                                                       absoluteSuffix},
};

template <class Interface>
constexpr const GUID& interfaceId() noexcept {
    return *std::get<InterfaceKind<Interface>>(interfaceKinds).id;
}
