// SPDX-License-Identifier: MIT
// The capture library's value types: devices, video formats, video norms,
// analogue input channels, and the text of the last error.
//
// Each is a copyable value around a pointer that only the library understands.
// An implementer supplies, per class: the struct `Implementation`, the
// constructor that adopts one, the copy constructor, the destructor, and the
// readers below. Texts returned by c_str live as long as the item.
#pragma once

#include <cstdint>

#include "capture/library/export.h"
#include "capture/library/strings.h"

namespace DShowLib {

class CAPTURE_LIBRARY_API VideoCaptureDeviceItem {
public:
    struct Implementation;
    explicit VideoCaptureDeviceItem(Implementation* adopted) noexcept;
    VideoCaptureDeviceItem(const VideoCaptureDeviceItem& other);
    VideoCaptureDeviceItem& operator=(const VideoCaptureDeviceItem&) = delete;
    ~VideoCaptureDeviceItem();

    // The device's name, UTF-8.
    const char* c_str() const;
    // The model name.
    dstringw getFriendlyName_() const;
    // False, with the argument left alone, when the device has no serial number.
    bool getSerialNumber(std::int64_t& serialNumber) const;

    const Implementation* implementation() const noexcept { return m_implementation; }

private:
    Implementation* m_implementation;
};

class CAPTURE_LIBRARY_API VideoFormatItem {
public:
    struct Implementation;
    explicit VideoFormatItem(Implementation* adopted) noexcept;
    VideoFormatItem(const VideoFormatItem& other);
    VideoFormatItem& operator=(const VideoFormatItem&) = delete;
    ~VideoFormatItem();

    // Such as "Y800 (640x480)"; the narrow and the wide text may differ.
    const char* c_str() const;
    dstringw toString_() const;

    const Implementation* implementation() const noexcept { return m_implementation; }

private:
    Implementation* m_implementation;
};

class CAPTURE_LIBRARY_API VideoNormItem {
public:
    struct Implementation;
    explicit VideoNormItem(Implementation* adopted) noexcept;
    VideoNormItem(const VideoNormItem& other);
    VideoNormItem& operator=(const VideoNormItem&) = delete;
    ~VideoNormItem();

    const char* c_str() const;

    const Implementation* implementation() const noexcept { return m_implementation; }

private:
    Implementation* m_implementation;
};

class CAPTURE_LIBRARY_API AnalogChannelItem {
public:
    struct Implementation;
    explicit AnalogChannelItem(Implementation* adopted) noexcept;
    AnalogChannelItem(const AnalogChannelItem& other);
    AnalogChannelItem& operator=(const AnalogChannelItem&) = delete;
    ~AnalogChannelItem();

    const char* c_str() const;
    dstringw toString_() const;

    const Implementation* implementation() const noexcept { return m_implementation; }

private:
    Implementation* m_implementation;
};

// Why the last call of a grabber failed.
class CAPTURE_LIBRARY_API Error {
public:
    struct Implementation;
    explicit Error(Implementation* adopted) noexcept;
    Error(const Error& other);
    Error& operator=(const Error&) = delete;
    ~Error();

    // The message, UTF-8; empty when nothing failed.
    const char* c_str() const;

private:
    Implementation* m_implementation;
};

}  // namespace DShowLib
