// SPDX-License-Identifier: MIT
#include "tests/border/other_library/brightness.h"

#include <cwchar>

#include "capture/library/property_ids.h"

namespace other_library {

namespace {

template <class Interface>
class CStatic : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

HRESULT one(LONG* count) {
    *count = 1;
    return S_OK;
}

template <class Base, class Object>
HRESULT handOut(Object& object, LONG index, Base** place) {
    if (index != 1) {
        return E_INVALIDARG;
    }
    *place = &object;
    return S_OK;
}

template <class Base, class Object>
HRESULT handOutFor(BSTR identifier, const wchar_t* own, Object& object, Base** place) {
    return std::wcscmp(identifier, own) == 0 ? handOut(object, 1, place) : E_INVALIDARG;
}

HRESULT write(BSTR* place, const wchar_t* text) {
    *place = ::SysAllocString(text);
    return S_OK;
}

class CRange final : public CStatic<DShowLib::IVCDRangeProperty> {
public:
    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* identifier) override {
        *identifier = DShowLib::IID_IVCDRangeProperty;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getValue(LONG* value) override {
        *value = m_value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE setValue(LONG value) override {
        m_value = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getRangeMin(LONG* minimum) override {
        *minimum = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getRangeMax(LONG* maximum) override {
        *maximum = 100;
        return S_OK;
    }

private:
    LONG m_value = 25;
};

class CElement final : public CStatic<DShowLib::IVCDPropertyElement> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) override {
        if (identifier != DShowLib::IID_IVCDRangeProperty) {
            return CStatic::QueryInterface(identifier, object);
        }
        *object = static_cast<DShowLib::IVCDRangeProperty*>(&m_range);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override { return write(name, L"Value"); }
    HRESULT STDMETHODCALLTYPE getElementID(GUID* identifier) override {
        *identifier = DShowLib::VCDElement_Value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override { return one(count); }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, DShowLib::IVCDPropertyInterface** item) override {
        return handOut(m_range, index, item);
    }

private:
    CRange m_range;
};

class CItem final : public CStatic<DShowLib::IVCDPropertyItem> {
public:
    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override { return write(name, L"Brightness"); }
    HRESULT STDMETHODCALLTYPE getItemID(GUID* identifier) override {
        *identifier = DShowLib::VCDID_Brightness;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override { return one(count); }
    HRESULT STDMETHODCALLTYPE getItem(LONG index,
                                      DShowLib::IVCDPropertyElement** element) override {
        return handOut(m_element, index, element);
    }
    HRESULT STDMETHODCALLTYPE findElement(BSTR identifier,
                                          DShowLib::IVCDPropertyElement** element) override {
        return handOutFor(identifier, L"{B57D3000-0AC6-4819-A609-272A33140ACA}", m_element,
                          element);
    }

private:
    CElement m_element;
};

class CItems final : public CStatic<DShowLib::IVCDPropertyItems> {
public:
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override { return one(count); }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, DShowLib::IVCDPropertyItem** item) override {
        return handOut(m_item, index, item);
    }
    HRESULT STDMETHODCALLTYPE findItem(BSTR identifier,
                                       DShowLib::IVCDPropertyItem** item) override {
        return handOutFor(identifier, L"{284C0E06-010B-45BF-8291-09D90A459B28}", m_item, item);
    }

private:
    CItem m_item;
};

CItems items;

}  // namespace

DShowLib::IVCDPropertyItems* brightnessItems() {
    return &items;
}

}  // namespace other_library
