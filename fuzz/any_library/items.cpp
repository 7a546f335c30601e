// SPDX-License-Identifier: MIT
#include "fuzz/any_library/items.h"

#include <array>
#include <cstring>
#include <limits>

#include "fuzz/any_library/texts.h"

namespace any_library {

ItemInside::ItemInside(std::uint8_t which) : text(which) {
    if (const char* source = narrowText(which); source != nullptr) {
        const std::size_t size = std::strlen(source) + 1;
        own = std::make_unique<char[]>(size);
        std::memcpy(own.get(), source, size);
    }
    ++world().alive.items;
}

const char* ItemInside::narrow() const {
    switch (beginCall()) {
        case Manner::null:
        case Manner::refused:
            return nullptr;
        case Manner::empty:
            return "";
        case Manner::longer:
            return narrowText(longText);
        case Manner::strange:
            return narrowText(strangeText(answers().detail()));
        default:
            return own.get();
    }
}

DShowLib::dstringw ItemInside::wide() const {
    std::wstring_view answer = wideText(text);
    switch (beginCall()) {
        case Manner::null:
        case Manner::refused:
            return DShowLib::dstringw(nullptr);
        case Manner::empty:
            answer = {};
            break;
        case Manner::longer:
            answer = wideText(longText);
            break;
        case Manner::strange:
            answer = wideText(strangeText(answers().detail()));
            break;
        default:
            break;
    }
    return DShowLib::dstringw(answer.data(), answer.size());
}

namespace {

constexpr std::array<std::int64_t, 5> serials = {0x1A2B, 0, -1,
                                                 std::numeric_limits<std::int64_t>::min(), 0x1A2C};

template <class Inside>
Inside* copyOf(const Inside* inside) {
    return inside != nullptr ? new Inside(*inside) : nullptr;
}
template <class Inside>
const char* narrowOf(const Inside* inside) {
    return inside != nullptr ? inside->narrow() : nullptr;
}
template <class Inside>
DShowLib::dstringw wideOf(const Inside* inside) {
    return inside != nullptr ? inside->wide() : DShowLib::dstringw();
}

}  // namespace

}  // namespace any_library

namespace DShowLib {

using any_library::copyOf;
using any_library::narrowOf;
using any_library::wideOf;

VideoCaptureDeviceItem::VideoCaptureDeviceItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
VideoCaptureDeviceItem::VideoCaptureDeviceItem(const VideoCaptureDeviceItem& other)
    : m_implementation(copyOf(other.m_implementation)) {}
VideoCaptureDeviceItem::~VideoCaptureDeviceItem() {
    delete m_implementation;
}
const char* VideoCaptureDeviceItem::c_str() const {
    return narrowOf(m_implementation);
}
dstringw VideoCaptureDeviceItem::getFriendlyName_() const {
    return wideOf(m_implementation);
}
bool VideoCaptureDeviceItem::getSerialNumber(std::int64_t& serialNumber) const {
    const auto manner = any_library::beginCall();
    // Null stands for a failure that writes all the same.
    if (manner == any_library::Manner::refused || m_implementation == nullptr ||
        any_library::world().serial == 255) {
        return false;
    }
    const std::uint8_t choice =
        manner == any_library::Manner::ordinary
            ? any_library::world().serial
            : static_cast<std::uint8_t>(1 + any_library::answers().detail());
    serialNumber = any_library::serials[choice % any_library::serials.size()];
    return manner != any_library::Manner::null;
}

VideoFormatItem::VideoFormatItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoFormatItem::VideoFormatItem(const VideoFormatItem& other)
    : m_implementation(copyOf(other.m_implementation)) {}
VideoFormatItem::~VideoFormatItem() {
    delete m_implementation;
}
const char* VideoFormatItem::c_str() const {
    return narrowOf(m_implementation);
}
dstringw VideoFormatItem::toString_() const {
    return wideOf(m_implementation);
}

VideoNormItem::VideoNormItem(Implementation* adopted) noexcept : m_implementation(adopted) {}
VideoNormItem::VideoNormItem(const VideoNormItem& other)
    : m_implementation(copyOf(other.m_implementation)) {}
VideoNormItem::~VideoNormItem() {
    delete m_implementation;
}
const char* VideoNormItem::c_str() const {
    return narrowOf(m_implementation);
}

AnalogChannelItem::AnalogChannelItem(Implementation* adopted) noexcept
    : m_implementation(adopted) {}
AnalogChannelItem::AnalogChannelItem(const AnalogChannelItem& other)
    : m_implementation(copyOf(other.m_implementation)) {}
AnalogChannelItem::~AnalogChannelItem() {
    delete m_implementation;
}
const char* AnalogChannelItem::c_str() const {
    return narrowOf(m_implementation);
}
dstringw AnalogChannelItem::toString_() const {
    return wideOf(m_implementation);
}

Error::Error(Implementation* adopted) noexcept : m_implementation(adopted) {}
Error::Error(const Error& other) : m_implementation(copyOf(other.m_implementation)) {}
Error::~Error() {
    delete m_implementation;
}
const char* Error::c_str() const {
    return narrowOf(m_implementation);
}

}  // namespace DShowLib
