// SPDX-License-Identifier: MIT
// The COM objects for the interfaces of an element: range, absolute value,
// switch, button, map strings, and those of unknown kind.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "capture/library/property_items.h"
#include "virtual_cameras/properties/property_tree.h"

namespace virtual_cameras {

// One interface of an element, whatever its kind.
class CInterfaceNode {
public:
    CInterfaceNode() = default;
    CInterfaceNode(const CInterfaceNode&) = delete;
    CInterfaceNode& operator=(const CInterfaceNode&) = delete;
    virtual ~CInterfaceNode() = default;

    virtual DShowLib::IVCDPropertyInterface* object() noexcept = 0;
    virtual const char* interfaceName() const noexcept = 0;
    virtual const GUID& identifier() const noexcept = 0;
    virtual std::int32_t callerReferences() const noexcept = 0;
    // The state as text; empty where there is none.
    virtual std::string state(CWorldLock& world) const = 0;
};

std::unique_ptr<CInterfaceNode> makeInterfaceNode(CPropertyTree& tree, RigItem& item,
                                                  RigElement& element, RigInterface& description);

}  // namespace virtual_cameras
