// SPDX-License-Identifier: MIT
#include "virtual_cameras/grabber/item_values.h"

#include "platform/text.h"
#include "virtual_cameras/calls/library_call.h"

namespace virtual_cameras {

namespace {

// A narrow text that lives as long as its item; null where that is asked for.
const char* narrowText(CLibraryCall&& call, const std::string& text) {
    if (call.fails()) {
        return call.returns(call.failsEmpty() ? nullptr : "");
    }
    return call.returns(text.c_str());
}

DShowLib::dstringw wideText(CLibraryCall&& call, const std::string& text) {
    const std::wstring wide = call.fails() ? std::wstring() : toWide(text);
    return call.returnsAs(call.fails() ? std::string() : text,
                          DShowLib::dstringw(wide.data(), wide.size()));
}

template <class Item, class Entry>
Item partItem(const std::shared_ptr<Camera>& camera, std::size_t norm,
              std::optional<std::size_t> index, const Entry* entry) {
    auto inside = std::make_unique<typename Item::Implementation>();
    if (camera && index && entry != nullptr) {
        inside->camera = camera;
        inside->norm = norm;
        inside->index = *index;
        inside->name = entry->name;
        if constexpr (requires { entry->text; }) {
            inside->text = entry->text;
        }
    }
    return Item(inside.release());
}

template <class Entry>
const Entry* entryOf(const std::optional<std::vector<Entry>>& list,
                     std::optional<std::size_t> index) {
    return list && index && *index < list->size() ? &(*list)[*index] : nullptr;
}

}  // namespace

DShowLib::VideoCaptureDeviceItem deviceItem(const std::shared_ptr<Camera>& camera) {
    auto inside = std::make_unique<DShowLib::VideoCaptureDeviceItem::Implementation>();
    if (camera) {
        inside->camera = camera;
        inside->name = camera->rig.name;
        inside->text = camera->rig.model;
    }
    return DShowLib::VideoCaptureDeviceItem(inside.release());
}

DShowLib::VideoFormatItem formatItem(const std::shared_ptr<Camera>& camera, std::size_t norm,
                                     std::optional<std::size_t> index) {
    const RigFormat* entry = camera ? entryOf(camera->formatsOf(norm), index) : nullptr;
    return partItem<DShowLib::VideoFormatItem>(camera, norm, index, entry);
}

DShowLib::VideoNormItem normItem(const std::shared_ptr<Camera>& camera,
                                 std::optional<std::size_t> index) {
    const RigNorm* entry = camera ? entryOf(camera->rig.norms, index) : nullptr;
    return partItem<DShowLib::VideoNormItem>(camera, 0, index, entry);
}

DShowLib::AnalogChannelItem channelItem(const std::shared_ptr<Camera>& camera,
                                        std::optional<std::size_t> index) {
    const RigChannel* entry = camera ? entryOf(camera->rig.channels, index) : nullptr;
    return partItem<DShowLib::AnalogChannelItem>(camera, 0, index, entry);
}

DShowLib::Error errorItem(const std::string& text) {
    auto inside = std::make_unique<DShowLib::Error::Implementation>();
    inside->text = text;
    return DShowLib::Error(inside.release());
}

}  // namespace virtual_cameras

namespace DShowLib {

using virtual_cameras::CLibraryCall;

VideoCaptureDeviceItem::VideoCaptureDeviceItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
VideoCaptureDeviceItem::VideoCaptureDeviceItem(const VideoCaptureDeviceItem& other)
    : m_implementation(new Implementation(*other.m_implementation)) {}
VideoCaptureDeviceItem::~VideoCaptureDeviceItem() {
    delete m_implementation;
}

const char* VideoCaptureDeviceItem::c_str() const {
    return virtual_cameras::narrowText(
        CLibraryCall("VideoCaptureDeviceItem::c_str", *m_implementation), m_implementation->name);
}

dstringw VideoCaptureDeviceItem::getFriendlyName_() const {
    return virtual_cameras::wideText(
        CLibraryCall("VideoCaptureDeviceItem::getFriendlyName_", *m_implementation),
        m_implementation->text);
}

bool VideoCaptureDeviceItem::getSerialNumber(std::int64_t& serialNumber) const {
    CLibraryCall call("VideoCaptureDeviceItem::getSerialNumber", *m_implementation);
    const auto& camera = m_implementation->camera;
    if (call.fails() || !camera || !camera->rig.serial) {
        return call.returns(false);
    }
    serialNumber = *camera->rig.serial;
    return call.returns(true);
}

VideoFormatItem::VideoFormatItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoFormatItem::VideoFormatItem(const VideoFormatItem& other)
    : m_implementation(new Implementation(*other.m_implementation)) {}
VideoFormatItem::~VideoFormatItem() {
    delete m_implementation;
}

const char* VideoFormatItem::c_str() const {
    return virtual_cameras::narrowText(CLibraryCall("VideoFormatItem::c_str", *m_implementation),
                                       m_implementation->name);
}

dstringw VideoFormatItem::toString_() const {
    return virtual_cameras::wideText(CLibraryCall("VideoFormatItem::toString_", *m_implementation),
                                     m_implementation->text);
}

VideoNormItem::VideoNormItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoNormItem::VideoNormItem(const VideoNormItem& other)
    : m_implementation(new Implementation(*other.m_implementation)) {}
VideoNormItem::~VideoNormItem() {
    delete m_implementation;
}

const char* VideoNormItem::c_str() const {
    return virtual_cameras::narrowText(CLibraryCall("VideoNormItem::c_str", *m_implementation),
                                       m_implementation->name);
}

AnalogChannelItem::AnalogChannelItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
AnalogChannelItem::AnalogChannelItem(const AnalogChannelItem& other)
    : m_implementation(new Implementation(*other.m_implementation)) {}
AnalogChannelItem::~AnalogChannelItem() {
    delete m_implementation;
}

const char* AnalogChannelItem::c_str() const {
    return virtual_cameras::narrowText(CLibraryCall("AnalogChannelItem::c_str", *m_implementation),
                                       m_implementation->name);
}

dstringw AnalogChannelItem::toString_() const {
    return virtual_cameras::wideText(
        CLibraryCall("AnalogChannelItem::toString_", *m_implementation), m_implementation->text);
}

Error::Error(Implementation* adopted) noexcept : m_implementation(adopted) {}
Error::Error(const Error& other) : m_implementation(new Implementation(*other.m_implementation)) {}
Error::~Error() {
    delete m_implementation;
}

const char* Error::c_str() const {
    return virtual_cameras::narrowText(CLibraryCall("Error::c_str", virtual_cameras::NoCamera()),
                                       m_implementation->text);
}

}  // namespace DShowLib
