// SPDX-License-Identifier: MIT
#include "virtual_cameras/properties/property_interfaces.h"

#include <algorithm>
#include <cmath>

#include "virtual_cameras/properties/com_object.h"
#include "virtual_cameras/properties/property_call.h"
#include "virtual_cameras/properties/texts_object.h"
#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

namespace {

// The state of one kind, and what all kinds have in common.
template <class Interface, class Kind>
class CInterfaceObject : public CComObject<Interface>, public CInterfaceNode {
public:
    CInterfaceObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                     RigInterface& description, const char* name)
        : CComObject<Interface>(tree),
          m_item(item),
          m_element(element),
          m_description(description),
          m_name(name),
          m_identifierCall(std::string(name) + "::getInterfaceID") {}

    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* identifier) override {
        CPropertyCall call(m_identifierCall.c_str(), *this, m_item.name, m_element.name);
        return call.read(this->tree(), identifier,
                         [&](CWorldLock&) { return m_description.identifier; });
    }

    DShowLib::IVCDPropertyInterface* object() noexcept override { return this; }
    const char* interfaceName() const noexcept override { return m_name; }
    const GUID& identifier() const noexcept override { return m_description.identifier; }
    std::int32_t callerReferences() const noexcept override { return this->references(); }

protected:
    Kind& kind() const { return std::get<Kind>(m_description.kind); }
    RigItem& item() const noexcept { return m_item; }
    RigElement& element() const noexcept { return m_element; }

    template <class... Arguments>
    CPropertyCall call(const char* operation, const Arguments&... arguments) const {
        return CPropertyCall(operation, *this, m_item.name, m_element.name, arguments...);
    }

    void* offered(REFIID wanted) override {
        return wanted == m_description.identifier
                   ? this->withReference(static_cast<Interface*>(this))
                   : CComObject<Interface>::offered(wanted);
    }

private:
    RigItem& m_item;
    RigElement& m_element;
    RigInterface& m_description;
    const char* m_name;
    std::string m_identifierCall;
};

// Limits may stand in reversed order.
template <class Number>
bool within(Number value, Number minimum, Number maximum) {
    return std::min(minimum, maximum) <= value && value <= std::max(minimum, maximum);
}

class CRangeObject final : public CInterfaceObject<DShowLib::IVCDRangeProperty, RigRange> {
public:
    CRangeObject(CPropertyTree& tree, RigItem& item, RigElement& element, RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDRangeProperty") {}

    HRESULT STDMETHODCALLTYPE getValue(LONG* value) override {
        return call("IVCDRangeProperty::getValue").read(tree(), value, [&](CWorldLock&) -> LONG {
            return kind().value;
        });
    }
    HRESULT STDMETHODCALLTYPE setValue(LONG value) override {
        const auto wanted = static_cast<std::int32_t>(value);
        return call("IVCDRangeProperty::setValue", wanted).run(tree(), [&](CWorldLock& world) {
            if (tree().automaticIsOn(world, item())) {
                return E_FAIL;
            }
            if (!within(wanted, kind().minimum, kind().maximum)) {
                return E_INVALIDARG;
            }
            tree().setRange(world, element(), kind(), wanted);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE getRangeMin(LONG* minimum) override {
        return call("IVCDRangeProperty::getRangeMin")
            .read(tree(), minimum, [&](CWorldLock&) -> LONG { return kind().minimum; });
    }
    HRESULT STDMETHODCALLTYPE getRangeMax(LONG* maximum) override {
        return call("IVCDRangeProperty::getRangeMax")
            .read(tree(), maximum, [&](CWorldLock&) -> LONG { return kind().maximum; });
    }
    std::string state(CWorldLock&) const override { return textOf(kind().value); }
};

class CAbsoluteObject final
    : public CInterfaceObject<DShowLib::IVCDAbsoluteValueProperty, RigAbsolute> {
public:
    CAbsoluteObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                    RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDAbsoluteValueProperty") {}

    HRESULT STDMETHODCALLTYPE getValue(double* value) override {
        return call("IVCDAbsoluteValueProperty::getValue").read(tree(), value, [&](CWorldLock&) {
            return kind().value;
        });
    }
    HRESULT STDMETHODCALLTYPE setValue(double value) override {
        return call("IVCDAbsoluteValueProperty::setValue", value)
            .run(tree(), [&](CWorldLock& world) {
                if (tree().automaticIsOn(world, item())) {
                    return E_FAIL;
                }
                if (!within(value, kind().minimum, kind().maximum)) {
                    return E_INVALIDARG;
                }
                tree().setAbsolute(world, element(), kind(), value);
                return S_OK;
            });
    }
    HRESULT STDMETHODCALLTYPE getRangeMin(double* minimum) override {
        return call("IVCDAbsoluteValueProperty::getRangeMin")
            .read(tree(), minimum, [&](CWorldLock&) { return kind().minimum; });
    }
    HRESULT STDMETHODCALLTYPE getRangeMax(double* maximum) override {
        return call("IVCDAbsoluteValueProperty::getRangeMax")
            .read(tree(), maximum, [&](CWorldLock&) { return kind().maximum; });
    }
    std::string state(CWorldLock&) const override { return textOf(kind().value); }
};

class CSwitchObject final : public CInterfaceObject<DShowLib::IVCDSwitchProperty, RigSwitch> {
public:
    CSwitchObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                  RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDSwitchProperty") {}

    HRESULT STDMETHODCALLTYPE getSwitch(VARIANT_BOOL* state) override {
        return call("IVCDSwitchProperty::getSwitch")
            .read(tree(), state, [&](CWorldLock&) -> VARIANT_BOOL {
                return kind().on ? VARIANT_TRUE : VARIANT_FALSE;
            });
    }
    HRESULT STDMETHODCALLTYPE setSwitch(VARIANT_BOOL state) override {
        return call("IVCDSwitchProperty::setSwitch", static_cast<std::int32_t>(state))
            .run(tree(), [&](CWorldLock& world) {
                if (state != VARIANT_TRUE && state != VARIANT_FALSE) {
                    return E_INVALIDARG;
                }
                tree().setSwitch(world, kind(), state == VARIANT_TRUE);
                return S_OK;
            });
    }
    std::string state(CWorldLock&) const override { return textOf(kind().on); }
};

class CButtonObject final : public CInterfaceObject<DShowLib::IVCDButtonProperty, RigButton> {
public:
    CButtonObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                  RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDButtonProperty") {}

    HRESULT STDMETHODCALLTYPE push() override {
        return call("IVCDButtonProperty::push").run(tree(), [&](CWorldLock& world) {
            tree().push(world, item(), kind());
            return S_OK;
        });
    }
    std::string state(CWorldLock& world) const override {
        return textOf(tree().pushes(world, item().name));
    }
};

class CStringsObject final : public CInterfaceObject<DShowLib::IVCDMapStringsProperty, RigStrings> {
public:
    CStringsObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                   RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDMapStringsProperty") {}

    HRESULT STDMETHODCALLTYPE getStrings(DShowLib::IVCDTexts** texts) override {
        // The new object comes with no reference; the call adds the caller's.
        return call("IVCDMapStringsProperty::getStrings")
            .readReference(tree(), texts, [&](CWorldLock&) -> DShowLib::IVCDTexts* {
                return makeTexts(tree(), kind().choices);
            });
    }
    HRESULT STDMETHODCALLTYPE getString(BSTR* text) override {
        return call("IVCDMapStringsProperty::getString").readText(tree(), text, [&](CWorldLock&) {
            return kind().value;
        });
    }
    HRESULT STDMETHODCALLTYPE setString(BSTR text) override {
        const std::string wanted = narrowComText(text);
        return call("IVCDMapStringsProperty::setString", wanted)
            .run(tree(), [&](CWorldLock& world) {
                const auto& choices = kind().choices;
                if (std::find(choices.begin(), choices.end(), wanted) == choices.end()) {
                    return E_INVALIDARG;
                }
                tree().setString(world, kind(), wanted);
                return S_OK;
            });
    }
    std::string state(CWorldLock&) const override { return kind().value; }
};

class CUnknownObject final : public CInterfaceObject<DShowLib::IVCDPropertyInterface, RigUnknown> {
public:
    CUnknownObject(CPropertyTree& tree, RigItem& item, RigElement& element,
                   RigInterface& description)
        : CInterfaceObject(tree, item, element, description, "IVCDPropertyInterface") {}
    std::string state(CWorldLock&) const override { return {}; }
};

struct NodeMaker {
    CPropertyTree& tree;
    RigItem& item;
    RigElement& element;
    RigInterface& description;
    using Node = std::unique_ptr<CInterfaceNode>;

    Node operator()(const RigRange&) const { return make<CRangeObject>(); }
    Node operator()(const RigAbsolute&) const { return make<CAbsoluteObject>(); }
    Node operator()(const RigSwitch&) const { return make<CSwitchObject>(); }
    Node operator()(const RigButton&) const { return make<CButtonObject>(); }
    Node operator()(const RigStrings&) const { return make<CStringsObject>(); }
    Node operator()(const RigUnknown&) const { return make<CUnknownObject>(); }

    template <class Object>
    Node make() const {
        return std::make_unique<Object>(tree, item, element, description);
    }
};

}  // namespace

std::unique_ptr<CInterfaceNode> makeInterfaceNode(CPropertyTree& tree, RigItem& item,
                                                  RigElement& element, RigInterface& description) {
    return std::visit(NodeMaker{tree, item, element, description}, description.kind);
}

}  // namespace virtual_cameras
