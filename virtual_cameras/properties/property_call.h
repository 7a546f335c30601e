// SPDX-License-Identifier: MIT
// What every operation of a property object does before its own work: asks for
// faults, refuses misuse, and fails while the device does not answer.
#pragma once

#include <string>

#include "platform/com_text.h"
#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/properties/property_tree.h"

namespace virtual_cameras {

// A property operation that may go on, or its failing result code.
class CPropertyCall : public CLibraryCall {
public:
    template <class Object, class... Arguments>
    CPropertyCall(const char* operation, const Object& object, const Arguments&... arguments)
        : CLibraryCall(operation, object, arguments...) {}

    // `work` runs under the lock and returns a result code.
    template <class Work>
    HRESULT run(CPropertyTree& tree, Work&& work) {
        if (fails()) {
            return returnsCode(failCode());
        }
        return returnsCode(tried(tree, work));
    }

    // `read` runs under the lock and returns the value for `place`.
    template <class Value, class Read>
    HRESULT read(CPropertyTree& tree, Value* place, Read&& read) {
        if (fails()) {
            return returnsCode(failCode());
        }
        if (!hasPlace(place)) {
            return returnsCode(E_POINTER);
        }
        const HRESULT result = tried(tree, [&](CWorldLock& world) {
            *place = read(world);
            return S_OK;
        });
        return result < 0 ? returnsCode(result) : returnsOk(shown(*place));
    }

    // As read, for a text (`read` returns it in UTF-8).
    template <class Read>
    HRESULT readText(CPropertyTree& tree, BSTR* place, Read&& read) {
        std::string text;
        const HRESULT result = started(tree, place, [&](CWorldLock& world) {
            text = read(world);
            return S_OK;
        });
        if (result < 0 || isEmptied()) {
            return returnsCode(result);
        }
        *place = newComText(toWide(text));
        return returnsOk(text);
    }

    // As read, for a reference; a null one is answered by E_FAIL.
    template <class Object, class Find>
    HRESULT readReference(CPropertyTree& tree, Object** place, Find&& find) {
        Object* found = nullptr;
        const HRESULT result = started(tree, place, [&](CWorldLock& world) {
            found = find(world);
            return found != nullptr ? S_OK : E_FAIL;
        });
        if (result >= 0 && found != nullptr) {
            found->AddRef();
            *place = found;
        }
        return returnsCode(result);
    }

private:
    static std::int32_t shown(LONG value) { return static_cast<std::int32_t>(value); }
    static std::int32_t shown(VARIANT_BOOL value) { return value; }
    static double shown(double value) { return value; }
    static std::string shown(const GUID& value);

    bool isEmptied() const noexcept { return fails() && failsEmpty(); }
    bool hasPlace(const void* place) const;

    // Sets the place to null first. A failure that is asked for empty succeeds.
    template <class Place, class Work>
    HRESULT started(CPropertyTree& tree, Place* place, Work&& work) {
        if (!hasPlace(place)) {
            return E_POINTER;
        }
        *place = nullptr;
        if (fails()) {
            return failsEmpty() ? S_OK : failCode();
        }
        return tried(tree, work);
    }

    template <class Work>
    HRESULT tried(CPropertyTree& tree, Work&& work) {
        CWorldLock world;
        return mayGoOn(world, tree) ? work(world) : E_FAIL;
    }

    bool mayGoOn(CWorldLock& world, CPropertyTree& tree) const;
};

}  // namespace virtual_cameras
