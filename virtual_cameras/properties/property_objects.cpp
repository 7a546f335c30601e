// SPDX-License-Identifier: MIT
#include "virtual_cameras/properties/property_objects.h"

#include <algorithm>
#include <optional>

#include "virtual_cameras/properties/property_call.h"
#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

namespace {

std::int32_t shownIndex(LONG index) {
    return static_cast<std::int32_t>(index);
}

// The entry at an index that runs from 1; null, and a misuse, when there is none.
template <class Entry>
Entry* entryAt(const std::vector<std::unique_ptr<Entry>>& entries, LONG index,
               const char* operation) {
    if (index < 1 || static_cast<std::size_t>(index) > entries.size()) {
        countMisuse(std::string(operation) + " with an index that is not there");
        return nullptr;
    }
    return entries[static_cast<std::size_t>(index) - 1].get();
}

bool isCalled(const std::string& name, const GUID& identifier, std::string_view wanted) {
    return name == wanted || identifierText(identifier) == wanted;
}

}  // namespace

CElementObject::CElementObject(CPropertyTree& tree, RigItem& item, RigElement& element)
    : CComObject(tree), m_item(item), m_element(element) {
    for (RigInterface& description : element.interfaces) {
        m_interfaces.push_back(makeInterfaceNode(tree, item, element, description));
    }
}

HRESULT STDMETHODCALLTYPE CElementObject::QueryInterface(REFIID identifier, void** object) {
    CLibraryCall call("IVCDPropertyElement::QueryInterface", *this, m_item.name, m_element.name,
                      identifierText(identifier));
    if (call.fails()) {
        if (object != nullptr) {
            *object = nullptr;
        }
        return call.returnsCode(call.failsEmpty() ? S_OK : call.failCode());
    }
    return call.returnsCode(CComObject::QueryInterface(identifier, object));
}

void* CElementObject::offered(REFIID identifier) {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(),
                     [&](const auto& node) { return node->identifier() == identifier; });
    if (found == m_interfaces.end()) {
        return CComObject::offered(identifier);
    }
    return withReference((*found)->object());
}

HRESULT STDMETHODCALLTYPE CElementObject::getName(BSTR* name) {
    CPropertyCall call("IVCDPropertyElement::getName", *this, m_item.name, m_element.name);
    return call.readText(tree(), name, [&](CWorldLock&) { return m_element.name; });
}

HRESULT STDMETHODCALLTYPE CElementObject::getElementID(GUID* identifier) {
    CPropertyCall call("IVCDPropertyElement::getElementID", *this, m_item.name, m_element.name);
    return call.read(tree(), identifier, [&](CWorldLock&) { return m_element.identifier; });
}

HRESULT STDMETHODCALLTYPE CElementObject::getCount(LONG* count) {
    CPropertyCall call("IVCDPropertyElement::getCount", *this, m_item.name, m_element.name);
    return call.read(tree(), count,
                     [&](CWorldLock&) { return static_cast<LONG>(m_interfaces.size()); });
}

HRESULT STDMETHODCALLTYPE CElementObject::getItem(LONG index,
                                                  DShowLib::IVCDPropertyInterface** item) {
    CPropertyCall call("IVCDPropertyElement::getItem", *this, m_item.name, m_element.name,
                       shownIndex(index));
    return call.readReference(tree(), item, [&](CWorldLock&) -> DShowLib::IVCDPropertyInterface* {
        auto* node = entryAt(m_interfaces, index, call.operation());
        return node != nullptr ? node->object() : nullptr;
    });
}

const CInterfaceNode* CElementObject::find(std::string_view interfaceName) const {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(),
                     [&](const auto& node) { return interfaceName == node->interfaceName(); });
    return found != m_interfaces.end() ? found->get() : nullptr;
}

CItemObject::CItemObject(CPropertyTree& tree, RigItem& item) : CComObject(tree), m_item(item) {
    for (RigElement& element : item.elements) {
        m_elements.push_back(std::make_unique<CElementObject>(tree, item, element));
    }
}

HRESULT STDMETHODCALLTYPE CItemObject::getName(BSTR* name) {
    CPropertyCall call("IVCDPropertyItem::getName", *this, m_item.name);
    return call.readText(tree(), name, [&](CWorldLock&) { return m_item.name; });
}

HRESULT STDMETHODCALLTYPE CItemObject::getItemID(GUID* identifier) {
    CPropertyCall call("IVCDPropertyItem::getItemID", *this, m_item.name);
    return call.read(tree(), identifier, [&](CWorldLock&) { return m_item.identifier; });
}

HRESULT STDMETHODCALLTYPE CItemObject::getCount(LONG* count) {
    CPropertyCall call("IVCDPropertyItem::getCount", *this, m_item.name);
    return call.read(tree(), count,
                     [&](CWorldLock&) { return static_cast<LONG>(m_elements.size()); });
}

HRESULT STDMETHODCALLTYPE CItemObject::getItem(LONG index, DShowLib::IVCDPropertyElement** item) {
    CPropertyCall call("IVCDPropertyItem::getItem", *this, m_item.name, shownIndex(index));
    return call.readReference(tree(), item, [&](CWorldLock&) -> DShowLib::IVCDPropertyElement* {
        return entryAt(m_elements, index, call.operation());
    });
}

HRESULT STDMETHODCALLTYPE CItemObject::findElement(BSTR identifier,
                                                   DShowLib::IVCDPropertyElement** element) {
    const std::string wanted = narrowComText(identifier);
    CPropertyCall call("IVCDPropertyItem::findElement", *this, m_item.name, wanted);
    return call.readReference(tree(), element, [&](CWorldLock&) -> DShowLib::IVCDPropertyElement* {
        const auto parsed = parseIdentifier(wanted);
        const auto found =
            std::find_if(m_elements.begin(), m_elements.end(), [&](const auto& candidate) {
                return parsed && candidate->element().identifier == *parsed;
            });
        return found != m_elements.end() ? found->get() : nullptr;
    });
}

CItemsObject::CItemsObject(CPropertyTree& tree) : CComObject(tree) {
    for (RigItem& item : tree.items()) {
        m_items.push_back(std::make_unique<CItemObject>(tree, item));
    }
}

HRESULT STDMETHODCALLTYPE CItemsObject::getCount(LONG* count) {
    CPropertyCall call("IVCDPropertyItems::getCount", *this);
    return call.read(tree(), count, [&](CWorldLock&) { return static_cast<LONG>(m_items.size()); });
}

HRESULT STDMETHODCALLTYPE CItemsObject::getItem(LONG index, DShowLib::IVCDPropertyItem** item) {
    CPropertyCall call("IVCDPropertyItems::getItem", *this, shownIndex(index));
    return call.readReference(tree(), item, [&](CWorldLock&) -> DShowLib::IVCDPropertyItem* {
        return entryAt(m_items, index, call.operation());
    });
}

HRESULT STDMETHODCALLTYPE CItemsObject::findItem(BSTR identifier,
                                                 DShowLib::IVCDPropertyItem** item) {
    const std::string wanted = narrowComText(identifier);
    CPropertyCall call("IVCDPropertyItems::findItem", *this, wanted);
    return call.readReference(tree(), item, [&](CWorldLock&) -> DShowLib::IVCDPropertyItem* {
        const auto parsed = parseIdentifier(wanted);
        const auto found = std::find_if(m_items.begin(), m_items.end(), [&](const auto& candidate) {
            return parsed && candidate->item().identifier == *parsed;
        });
        return found != m_items.end() ? found->get() : nullptr;
    });
}

const CInterfaceNode* CItemsObject::find(std::string_view item, std::string_view element,
                                         std::string_view interfaceName) const {
    for (const auto& itemObject : m_items) {
        if (!isCalled(itemObject->item().name, itemObject->item().identifier, item)) {
            continue;
        }
        for (const auto& elementObject : itemObject->elements()) {
            const RigElement& description = elementObject->element();
            const CInterfaceNode* node = isCalled(description.name, description.identifier, element)
                                             ? elementObject->find(interfaceName)
                                             : nullptr;
            if (node != nullptr) {
                return node;
            }
        }
    }
    return nullptr;
}

}  // namespace virtual_cameras
