// SPDX-License-Identifier: MIT
// The COM objects for a device's property collection, its items, and their
// elements. The interfaces of elements are in property_interfaces.h.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "capture/library/property_items.h"
#include "virtual_cameras/properties/com_object.h"
#include "virtual_cameras/properties/property_interfaces.h"

namespace virtual_cameras {

class CElementObject final : public CComObject<DShowLib::IVCDPropertyElement> {
public:
    CElementObject(CPropertyTree& tree, RigItem& item, RigElement& element);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) override;
    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override;
    HRESULT STDMETHODCALLTYPE getElementID(GUID* identifier) override;
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override;
    HRESULT STDMETHODCALLTYPE getItem(LONG index, DShowLib::IVCDPropertyInterface** item) override;

    const RigElement& element() const noexcept { return m_element; }
    // Null when the element has no such interface.
    const CInterfaceNode* find(std::string_view interfaceName) const;

private:
    void* offered(REFIID identifier) override;

    const RigItem& m_item;
    RigElement& m_element;
    std::vector<std::unique_ptr<CInterfaceNode>> m_interfaces;
};

class CItemObject final : public CComObject<DShowLib::IVCDPropertyItem> {
public:
    CItemObject(CPropertyTree& tree, RigItem& item);

    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override;
    HRESULT STDMETHODCALLTYPE getItemID(GUID* identifier) override;
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override;
    HRESULT STDMETHODCALLTYPE getItem(LONG index, DShowLib::IVCDPropertyElement** item) override;
    HRESULT STDMETHODCALLTYPE findElement(BSTR identifier,
                                          DShowLib::IVCDPropertyElement** element) override;

    const RigItem& item() const noexcept { return m_item; }
    const std::vector<std::unique_ptr<CElementObject>>& elements() const noexcept {
        return m_elements;
    }

private:
    RigItem& m_item;
    std::vector<std::unique_ptr<CElementObject>> m_elements;
};

class CItemsObject final : public CComObject<DShowLib::IVCDPropertyItems> {
public:
    explicit CItemsObject(CPropertyTree& tree);

    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override;
    HRESULT STDMETHODCALLTYPE getItem(LONG index, DShowLib::IVCDPropertyItem** item) override;
    HRESULT STDMETHODCALLTYPE findItem(BSTR identifier, DShowLib::IVCDPropertyItem** item) override;

    // Item and element by name or identifier text. Null when there is none.
    const CInterfaceNode* find(std::string_view item, std::string_view element,
                               std::string_view interfaceName) const;

private:
    std::vector<std::unique_ptr<CItemObject>> m_items;
};

}  // namespace virtual_cameras
