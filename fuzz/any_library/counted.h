// SPDX-License-Identifier: MIT
// COM objects of the library, and how they answer.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "capture/library/property_items.h"
#include "fuzz/any_library/world.h"
#include "fuzz/input/fuzz_input.h"

namespace any_library {

// Counts its references; a call without one is a call of what has gone.
template <class Interface>
class CObject : public CCounted, public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*identifier*/, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        ++world().alive.references;
        return ++m_references;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        require(m_references > 0, "a reference is given back once");
        --world().alive.references;
        return --m_references;
    }

protected:
    Manner begin() const {
        require(m_references > 0, "what was given back is not called");
        return beginCall();
    }

private:
    ULONG m_references = 0;
};

template <class Object, class... Arguments>
Object* make(Arguments&&... arguments) {
    auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
    Object* made = object.get();
    world().objects.push_back(std::move(object));
    return made;
}

// Hands out a reference, or says that it did.
template <class Base, class Object>
HRESULT handOut(Manner manner, Object* object, Base** place) {
    if (object == nullptr) {
        return E_INVALIDARG;
    }
    // Even with a failure, what is handed out belongs to the caller.
    if (manner == Manner::ordinary || manner == Manner::strange) {
        object->AddRef();
        *place = object;
    }
    return manner == Manner::strange ? E_FAIL : resultOf(manner);
}

HRESULT write(Manner manner, std::wstring_view text, BSTR* place);
HRESULT count(Manner manner, std::size_t size, LONG* place);

// An identifier that the adapter does not know.
constexpr GUID otherId(std::uint8_t number) noexcept {
    return {0xA0A0A000U + number, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
}

// One interface of an element.
struct OfferedInterface {
    DShowLib::IVCDPropertyInterface* object;
    GUID id;
    void* asked;  // what QueryInterface hands out; null where it has none
};
OfferedInterface makeInterface(std::uint8_t kind);

}  // namespace any_library
