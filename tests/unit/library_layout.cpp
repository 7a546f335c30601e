// SPDX-License-Identifier: MIT
#include "tests/unit/library_layout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "capture/capture_library.h"

using namespace DShowLib;

namespace {

// What every virtual function below leaves behind.
std::string_view called;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

HRESULT note(std::string_view name) noexcept {
    called = name;
    return 0;
}

template <class Interface>
struct Unknown : Interface {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*id*/, void** /*object*/) override {
        return note("QueryInterface");
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return note("AddRef") == 0 ? 1 : 0; }
    ULONG STDMETHODCALLTYPE Release() override { return note("Release") == 0 ? 1 : 0; }
};

template <class Interface>
struct Property : Unknown<Interface> {
    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* /*id*/) override {
        return note("getInterfaceID");
    }
};

template <class Interface, class Number>
struct Ranged : Property<Interface> {
    HRESULT STDMETHODCALLTYPE getValue(Number* /*value*/) override { return note("getValue"); }
    HRESULT STDMETHODCALLTYPE setValue(Number /*value*/) override { return note("setValue"); }
    HRESULT STDMETHODCALLTYPE getRangeMin(Number* /*value*/) override {
        return note("getRangeMin");
    }
    HRESULT STDMETHODCALLTYPE getRangeMax(Number* /*value*/) override {
        return note("getRangeMax");
    }
};

struct Switch : Property<IVCDSwitchProperty> {
    HRESULT STDMETHODCALLTYPE getSwitch(VARIANT_BOOL* /*state*/) override {
        return note("getSwitch");
    }
    HRESULT STDMETHODCALLTYPE setSwitch(VARIANT_BOOL /*state*/) override {
        return note("setSwitch");
    }
};

struct Button : Property<IVCDButtonProperty> {
    HRESULT STDMETHODCALLTYPE push() override { return note("push"); }
};

struct MapStrings : Property<IVCDMapStringsProperty> {
    HRESULT STDMETHODCALLTYPE getStrings(IVCDTexts** /*texts*/) override {
        return note("getStrings");
    }
    HRESULT STDMETHODCALLTYPE getString(BSTR* /*text*/) override { return note("getString"); }
    HRESULT STDMETHODCALLTYPE setString(BSTR /*text*/) override { return note("setString"); }
};

struct Texts : Unknown<IVCDTexts> {
    HRESULT STDMETHODCALLTYPE getCount(LONG* /*count*/) override { return note("getCount"); }
    HRESULT STDMETHODCALLTYPE getItem(LONG /*index*/, BSTR* /*text*/) override {
        return note("getItem");
    }
};

struct Element : Unknown<IVCDPropertyElement> {
    HRESULT STDMETHODCALLTYPE getName(BSTR* /*name*/) override { return note("getName"); }
    HRESULT STDMETHODCALLTYPE getElementID(GUID* /*id*/) override { return note("getElementID"); }
    HRESULT STDMETHODCALLTYPE getCount(LONG* /*count*/) override { return note("getCount"); }
    HRESULT STDMETHODCALLTYPE getItem(LONG /*index*/, IVCDPropertyInterface** /*item*/) override {
        return note("getItem");
    }
};

struct PropertyItem : Unknown<IVCDPropertyItem> {
    HRESULT STDMETHODCALLTYPE getName(BSTR* /*name*/) override { return note("getName"); }
    HRESULT STDMETHODCALLTYPE getItemID(GUID* /*id*/) override { return note("getItemID"); }
    HRESULT STDMETHODCALLTYPE getCount(LONG* /*count*/) override { return note("getCount"); }
    HRESULT STDMETHODCALLTYPE getItem(LONG /*index*/, IVCDPropertyElement** /*item*/) override {
        return note("getItem");
    }
    HRESULT STDMETHODCALLTYPE findElement(BSTR /*id*/, IVCDPropertyElement** /*item*/) override {
        return note("findElement");
    }
};

struct Items : Unknown<IVCDPropertyItems> {
    HRESULT STDMETHODCALLTYPE getCount(LONG* /*count*/) override { return note("getCount"); }
    HRESULT STDMETHODCALLTYPE getItem(LONG /*index*/, IVCDPropertyItem** /*item*/) override {
        return note("getItem");
    }
    HRESULT STDMETHODCALLTYPE findItem(BSTR /*id*/, IVCDPropertyItem** /*item*/) override {
        return note("findItem");
    }
};

struct Listener : GrabberListener {
    void overlayCallback(Grabber& /*from*/, smart_ptr<MemBuffer>& /*buffer*/) override {
        note("overlayCallback");
    }
    void frameReady(Grabber& /*from*/, smart_ptr<MemBuffer> /*buffer*/, ULONG /*frame*/) override {
        note("frameReady");
    }
    void frameDropped(Grabber& /*from*/, smart_ptr<MemBuffer> /*buffer*/,
                      ULONG /*frame*/) override {
        note("frameDropped");
    }
    void deviceLost(Grabber& /*from*/) override { note("deviceLost"); }
};

// Calls the virtual functions by their places in the table, from `first` on. Arguments
// are never looked at; a handle by value is a pointer to an empty one in every ABI.
std::string tableOf(void* object, std::size_t first, std::size_t count) {
    using Function = std::intptr_t (*)(void*, void*, void*, void*);
    std::string names;
    for (std::size_t i = first; i < first + count; ++i) {
        Function function = nullptr;
        void** table = nullptr;
        std::memcpy(&table, object, sizeof(table));
        std::memcpy(&function, table + i, sizeof(function));
        std::array<void*, 2> emptyHandle{};
        called = "?";
        function(object, emptyHandle.data(), emptyHandle.data(), emptyHandle.data());
        names += " " + std::string(called);
    }
    return names;
}

template <class Object>
std::string interfaceLine(std::string_view name, std::size_t functions) {
    Object object;
    static_assert(sizeof(Object) == sizeof(void*));
    return std::string(name) + ":" + tableOf(&object, 0, functions) + "\n";
}

std::string listenerLine() {
    Listener listener;
    // The destructor comes first; GNU's ABI has two entries for it, Microsoft's one.
#if defined(_MSC_VER)
    constexpr std::size_t destructors = 1;
#else
    constexpr std::size_t destructors = 2;
#endif
    static_assert(sizeof(GrabberListener) == sizeof(void*));
    return "GrabberListener: destructor" + tableOf(&listener, destructors, 4) + "\n";
}

// Where in an object a value lies, in steps of four bytes; 999 when nowhere.
template <class Object, class Value>
std::string placeOf(const Object& object, const Value& value) {
    std::array<std::byte, sizeof(Object)> bytes;
    std::memcpy(bytes.data(), static_cast<const void*>(&object), bytes.size());
    for (std::size_t place = 0; place + sizeof(Value) <= bytes.size(); place += 4) {
        if (std::memcmp(bytes.data() + place, &value, sizeof(Value)) == 0) {
            return std::to_string(place);
        }
    }
    return "999";
}

template <class Object>
std::string sizeLine(std::string_view name) {
    return std::string(name) + ": " + std::to_string(sizeof(Object)) + " bytes";
}

std::string handleLines() {
    auto* number = new double(0.0);
    const smart_ptr<double> handle(number);
    const smart_ptr<double> second(handle);
    std::array<void*, 2> parts{};
    std::memcpy(parts.data(), static_cast<const void*>(&handle), sizeof(parts));
    const auto* block = static_cast<const smart_ptr_block*>(parts[1]);
    dvector<double> list;
    for (int i = 0; i < 5; ++i) {
        list.push_back(0.0);
    }
    const dstringa text("text");
    return sizeLine<smart_ptr<double>>("smart_ptr") + ", object " + placeOf(handle, number) + "\n" +
           sizeLine<smart_ptr_block>("smart_ptr_block") + ", references " +
           placeOf(*block, std::int32_t{2}) + ", destroy " + placeOf(*block, block->destroy) +
           "\n" + sizeLine<smart_com<IUnknown>>("smart_com") + "\n" +
           sizeLine<dvector<double>>("dvector") + ", items " + placeOf(list, list.begin()) +
           ", size " + placeOf(list, std::uint32_t{5}) + ", capacity " +
           placeOf(list, std::uint32_t{8}) + "\n" + sizeLine<dstringa>("dstring") + ", text " +
           placeOf(text, text.c_str()) + ", size " + placeOf(text, text.size()) + "\n";
}

template <class Value>
std::string valueLine(std::string_view name) {
    static_assert(sizeof(Value) == sizeof(void*));
    static_assert(alignof(Value) == alignof(void*));
    // Such a class is returned through a pointer to its place, in both ABIs.
    static_assert(!std::is_trivially_copyable_v<Value>);
    return sizeLine<Value>(name) + "\n";
}

std::string valueLines() {
    return valueLine<VideoCaptureDeviceItem>("VideoCaptureDeviceItem") +
           valueLine<VideoFormatItem>("VideoFormatItem") +
           valueLine<VideoNormItem>("VideoNormItem") +
           valueLine<AnalogChannelItem>("AnalogChannelItem") + valueLine<Error>("Error") +
           sizeLine<FrameTypeInfo>("FrameTypeInfo") + ", subtype " +
           std::to_string(offsetof(FrameTypeInfo, subtype)) + ", width " +
           std::to_string(offsetof(FrameTypeInfo, width)) + ", height " +
           std::to_string(offsetof(FrameTypeInfo, height)) + ", bufferSize " +
           std::to_string(offsetof(FrameTypeInfo, bufferSize)) + "\n" +
           sizeLine<FrameHandlerSink::tCreateData>("FrameHandlerSink::tCreateData") +
           ", bufferCount " + std::to_string(offsetof(FrameHandlerSink::tCreateData, bufferCount)) +
           ", frameTypes " + std::to_string(offsetof(FrameHandlerSink::tCreateData, frameTypes)) +
           ", userCollection " +
           std::to_string(offsetof(FrameHandlerSink::tCreateData, userCollection)) + "\n";
}

std::string tableLines() {
    return listenerLine() + interfaceLine<Ranged<IVCDRangeProperty, LONG>>("IVCDRangeProperty", 8) +
           interfaceLine<Ranged<IVCDAbsoluteValueProperty, double>>("IVCDAbsoluteValueProperty",
                                                                    8) +
           interfaceLine<Switch>("IVCDSwitchProperty", 6) +
           interfaceLine<Button>("IVCDButtonProperty", 5) +
           interfaceLine<MapStrings>("IVCDMapStringsProperty", 7) +
           interfaceLine<Texts>("IVCDTexts", 5) + interfaceLine<Element>("IVCDPropertyElement", 7) +
           interfaceLine<PropertyItem>("IVCDPropertyItem", 8) +
           interfaceLine<Items>("IVCDPropertyItems", 6);
}

}  // namespace

std::string libraryLayout() {
    return handleLines() + valueLines() + tableLines();
}
