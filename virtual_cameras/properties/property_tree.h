// SPDX-License-Identifier: MIT
// The properties of one camera: their present values, and the COM objects through
// which callers reach them. Lives for as long as the camera or any reference does.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "capture/library/property_items.h"
#include "virtual_cameras/calls/world_lock.h"
#include "virtual_cameras/rig/rig.h"
#include "virtual_cameras/scenes/tone.h"

namespace virtual_cameras {

class CItemsObject;

// Values are read and written under the world's lock only.
class CPropertyTree {
public:
    // The caller owns one reference.
    explicit CPropertyTree(const RigCamera& camera);
    CPropertyTree(const CPropertyTree&) = delete;
    CPropertyTree& operator=(const CPropertyTree&) = delete;

    void addReference() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept;

    const std::string& cameraId() const noexcept { return m_cameraId; }
    CItemsObject& itemsObject() noexcept { return *m_itemsObject; }
    std::vector<RigItem>& items() noexcept { return m_items; }

    // While no device is open, or it is gone, every operation fails.
    bool answers(CWorldLock&) const noexcept { return m_answers; }
    void setAnswers(CWorldLock&, bool answers) noexcept { m_answers = answers; }
    // The camera is no longer part of any rig.
    bool isOrphaned(CWorldLock&) const noexcept { return m_orphaned; }
    void orphan(CWorldLock&) noexcept;

    // Back to the values of the rig.
    void powerUp(CWorldLock&);

    bool automaticIsOn(CWorldLock&, const RigItem& item) const;
    bool triggerIsOn(CWorldLock&) const;
    // Within the limits, which the caller has tested.
    void setRange(CWorldLock&, RigElement& element, RigRange& range, std::int32_t value);
    void setAbsolute(CWorldLock&, RigElement& element, RigAbsolute& absolute, double value);
    void setSwitch(CWorldLock&, RigSwitch& toggle, bool on);
    void setString(CWorldLock&, RigStrings& strings, std::string value);
    // Behind everybody's back: no automatic is in the way.
    void change(CWorldLock& world, const RigChange& change);
    void push(CWorldLock&, RigItem& item, const RigButton& button);

    std::uint32_t pushes(CWorldLock&, std::string_view item) const;
    // Changes with every write.
    std::uint64_t version(CWorldLock&) const noexcept { return m_version; }
    ToneSettings tone(CWorldLock&) const;

private:
    ~CPropertyTree();
    void changed(CWorldLock& world);

    std::atomic<std::int32_t> m_references{1};
    const std::string m_cameraId;
    const std::vector<RigItem> m_initial;
    std::vector<RigItem> m_items;
    std::map<std::string, std::uint32_t, std::less<>> m_pushes;
    std::uint64_t m_version = 1;
    bool m_answers = false;
    bool m_orphaned = false;
    std::unique_ptr<CItemsObject> m_itemsObject;
};

}  // namespace virtual_cameras
