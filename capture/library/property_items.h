// SPDX-License-Identifier: MIT
// The device's properties: items (such as exposure) with elements (value, auto,
// one push), each of which offers interfaces (range, switch, ...).
//
// COM interfaces: every operation returns a result code, negative for failure,
// and a reference or text that it hands out belongs to the caller (Release,
// SysFreeString). Indices run from 1 to the count. Identifiers are passed as
// text in registry form, "{284C0E07-010B-45BF-8291-09D90A459B28}".
// An element answers QueryInterface for the interfaces that it offers.
#pragma once

#include "platform/windows.h"

namespace DShowLib {

// Any interface of an element.
struct IVCDPropertyInterface : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* identifier) = 0;
};

struct IVCDRangeProperty : public IVCDPropertyInterface {
    virtual HRESULT STDMETHODCALLTYPE getValue(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setValue(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE getRangeMin(LONG* minimum) = 0;
    virtual HRESULT STDMETHODCALLTYPE getRangeMax(LONG* maximum) = 0;
};

struct IVCDAbsoluteValueProperty : public IVCDPropertyInterface {
    virtual HRESULT STDMETHODCALLTYPE getValue(double* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setValue(double value) = 0;
    virtual HRESULT STDMETHODCALLTYPE getRangeMin(double* minimum) = 0;
    virtual HRESULT STDMETHODCALLTYPE getRangeMax(double* maximum) = 0;
};

// VARIANT_TRUE (all 16 bits set) is on, VARIANT_FALSE off.
struct IVCDSwitchProperty : public IVCDPropertyInterface {
    virtual HRESULT STDMETHODCALLTYPE getSwitch(VARIANT_BOOL* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE setSwitch(VARIANT_BOOL state) = 0;
};

struct IVCDButtonProperty : public IVCDPropertyInterface {
    virtual HRESULT STDMETHODCALLTYPE push() = 0;
};

// A list of texts.
struct IVCDTexts : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getCount(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE getItem(LONG index, BSTR* text) = 0;
};

struct IVCDMapStringsProperty : public IVCDPropertyInterface {
    virtual HRESULT STDMETHODCALLTYPE getStrings(IVCDTexts** texts) = 0;
    virtual HRESULT STDMETHODCALLTYPE getString(BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE setString(BSTR text) = 0;
};

// One part of an item, such as its value or its automatic.
struct IVCDPropertyElement : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getName(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE getElementID(GUID* identifier) = 0;
    virtual HRESULT STDMETHODCALLTYPE getCount(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyInterface** item) = 0;
};

// One property of the device.
struct IVCDPropertyItem : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getName(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE getItemID(GUID* identifier) = 0;
    virtual HRESULT STDMETHODCALLTYPE getCount(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyElement** element) = 0;
    // Fails when the item has no such element.
    virtual HRESULT STDMETHODCALLTYPE findElement(BSTR identifier,
                                                  IVCDPropertyElement** element) = 0;
};

// All properties of one device.
struct IVCDPropertyItems : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE getCount(LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyItem** item) = 0;
    // Fails when the device has no such item.
    virtual HRESULT STDMETHODCALLTYPE findItem(BSTR identifier, IVCDPropertyItem** item) = 0;
};

}  // namespace DShowLib
