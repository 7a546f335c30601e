// SPDX-License-Identifier: MIT
// The value types. There is one value of each kind, so the pointers stay null.
#include "tests/border/other_library/items.h"

#include "capture/library/items.h"

namespace DShowLib {

VideoCaptureDeviceItem::VideoCaptureDeviceItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
VideoCaptureDeviceItem::VideoCaptureDeviceItem(const VideoCaptureDeviceItem& other)
    : m_implementation(other.m_implementation) {}
VideoCaptureDeviceItem::~VideoCaptureDeviceItem() {}
const char* VideoCaptureDeviceItem::c_str() const {
    return other_library::cameraName;
}
dstringw VideoCaptureDeviceItem::getFriendlyName_() const {
    return dstringw(other_library::modelName);
}
bool VideoCaptureDeviceItem::getSerialNumber(std::int64_t& serialNumber) const {
    serialNumber = other_library::serialNumber;
    return true;
}

VideoFormatItem::VideoFormatItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoFormatItem::VideoFormatItem(const VideoFormatItem& other)
    : m_implementation(other.m_implementation) {}
VideoFormatItem::~VideoFormatItem() {}
const char* VideoFormatItem::c_str() const {
    return other_library::formatName;
}
dstringw VideoFormatItem::toString_() const {
    return dstringw(other_library::formatText);
}

VideoNormItem::VideoNormItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoNormItem::VideoNormItem(const VideoNormItem& other)
    : m_implementation(other.m_implementation) {}
VideoNormItem::~VideoNormItem() {}
const char* VideoNormItem::c_str() const {
    return "";
}

AnalogChannelItem::AnalogChannelItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
AnalogChannelItem::AnalogChannelItem(const AnalogChannelItem& other)
    : m_implementation(other.m_implementation) {}
AnalogChannelItem::~AnalogChannelItem() {}
const char* AnalogChannelItem::c_str() const {
    return "";
}
dstringw AnalogChannelItem::toString_() const {
    return dstringw();
}

Error::Error(Implementation* adopted) noexcept : m_implementation(adopted) {}
Error::Error(const Error& other) : m_implementation(other.m_implementation) {}
Error::~Error() {}
const char* Error::c_str() const {
    return "The other library has no error to tell.";
}

}  // namespace DShowLib
