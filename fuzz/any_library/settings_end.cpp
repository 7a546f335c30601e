// SPDX-License-Identifier: MIT
#include "fuzz/any_library/settings_end.h"

#include <new>
#include <typeinfo>

#include "fuzz/input/fuzz_input.h"
#include "properties/camera_features.h"
#include "properties/device_format_lists.h"
#include "properties/device_formats.h"
#include "properties/executables.h"
#include "properties/process_store.h"

namespace any_library {

namespace {

struct Polymorphic {
    virtual void any() = 0;

protected:
    ~Polymorphic() = default;
};

// The store knows addresses alone. Settings and commands both begin with their table of
// virtual members, which tells the class; a sanitizer would miss a base in common.
__attribute__((no_sanitize("undefined"))) const std::type_info& classOf(const void* object) {
    return typeid(*static_cast<const Polymorphic*>(object));
}

template <class Object>
bool deleteIf(const void* object) {
    if (classOf(object) != typeid(Object)) {
        return false;
    }
    // Not by delete: only the class that is known here makes that safe.
    const auto* known = static_cast<const Object*>(object);
    known->Object::~Object();
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the store only keeps.
    ::operator delete(const_cast<Object*>(known));
    return true;
}

template <class... Objects>
bool deleteAnyOf(const void* object) {
    return (deleteIf<Objects>(object) || ...);
}

}  // namespace

void endSettings() {
    auto& objects = processStore();
    for (const void* object : objects) {
        const bool isKnown =
            object == nullptr ||
            deleteAnyOf<CPropertyPixelFormat, CPropertyFrameRate, CFeatures, CVCDPropertyValue,
                        CVCDPropertyValueMin, CVCDPropertyValueMax, CVCDPropertyAbsValue,
                        CVCDPropertyAbsValueMin, CVCDPropertyAbsValueMax, CVCDPropertyAuto,
                        CVCDPropertyMapString, CPropertyVideoFormat, CPropertyVideoNorm,
                        CPropertyInputChannel, CPropertyVideoFormats, CPropertyVideoNorms,
                        CPropertyInputChannels, CPropertyVideoFormatAt, CExecuteOnePush,
                        CExecutePropertyDialog>(object);
        require(isKnown, "every stored object is a setting or a command");
    }
    objects.clear();
}

}  // namespace any_library
