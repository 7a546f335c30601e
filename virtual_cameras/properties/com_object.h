// SPDX-License-Identifier: MIT
// The base of all COM objects of a property tree: references are counted per
// object, and each also holds the tree, so that nothing a caller holds ever dies.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/windows.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/properties/property_tree.h"

namespace virtual_cameras {

inline constexpr GUID unknownInterface = {
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

// Any thread. The tree owns the object; callers own references.
template <class Interface>
class CComObject : public Interface {
public:
    explicit CComObject(CPropertyTree& tree) : m_tree(tree) {}
    CComObject(const CComObject&) = delete;
    CComObject& operator=(const CComObject&) = delete;
    virtual ~CComObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) override {
        if (object == nullptr) {
            countMisuse("QueryInterface without a place for its result");
            return E_POINTER;
        }
        *object = offered(identifier);
        return *object != nullptr ? S_OK : E_NOINTERFACE;
    }

    ULONG STDMETHODCALLTYPE AddRef() override {
        m_tree.addReference();
        alive().interfaces.fetch_add(1, std::memory_order_relaxed);
        return static_cast<ULONG>(m_references.fetch_add(1, std::memory_order_relaxed) + 1);
    }

    ULONG STDMETHODCALLTYPE Release() override {
        const std::int32_t left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left < 0) {
            m_references.fetch_add(1, std::memory_order_relaxed);
            countMisuse("a property interface was released too often");
            return 0;
        }
        alive().interfaces.fetch_sub(1, std::memory_order_relaxed);
        m_tree.release();  // may end this object
        return static_cast<ULONG>(left);
    }

    std::int32_t references() const noexcept {
        return m_references.load(std::memory_order_relaxed);
    }
    const std::string& cameraName() const noexcept { return m_tree.cameraId(); }

protected:
    CPropertyTree& tree() const noexcept { return m_tree; }
    // With a reference for the caller; null when there is no such interface.
    virtual void* offered(REFIID identifier) {
        return identifier == unknownInterface ? withReference(this) : nullptr;
    }
    template <class Object>
    static Object* withReference(Object* object) {
        object->AddRef();
        return object;
    }

private:
    CPropertyTree& m_tree;
    std::atomic<std::int32_t> m_references{0};
};

}  // namespace virtual_cameras
