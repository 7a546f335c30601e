// SPDX-License-Identifier: MIT
// CProperty, the base of every setting with a text value, and the settings of
// the device itself: pixel format and frame rate, and the fixed texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "capture/capture_library.h"
#include "capture/pixel_type.h"

// A setting that the host reads and writes as text. Host thread.
//
// Message and value buffers are the host's: 256 bytes, or null for none. Both
// operations return HOST_RESULT_SUCCESS or HOST_RESULT_FAILURE; on failure the
// message says why, on success it is left alone. A bad value never throws; a
// failing result code of the capture library leaves as a thrown 32-bit integer.
//
// Settings live to the end of the process, so there is no virtual destructor.
class CProperty {
public:
    CProperty(const CProperty&) = delete;
    CProperty& operator=(const CProperty&) = delete;

    virtual std::int32_t getValue(char* message, char* value) = 0;
    virtual std::int32_t setValue(char* message, std::string_view value) = 0;

    // Whether a set has ever asked for a new frame sink. Never cleared.
    bool isChanged() const noexcept { return m_changed; }

protected:
    explicit CProperty(std::string_view name) : m_name(name) {}
    ~CProperty() = default;

    std::string m_name;
    bool m_changed = false;
};

// The pixel type of the frames that the host copies.
class CPropertyPixelFormat final : public CProperty {
public:
    using SinkHolder = DShowLib::smart_ptr<DShowLib::FrameHandlerSink>;

    // The grabber is not owned; of the sink holder a reference is kept.
    CPropertyPixelFormat(std::string_view name, DShowLib::Grabber& grabber, SinkHolder sink);

    // "unkown" for a pixel type without a name. Kept: hosts match this text.
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

    PixelType pixelType() const noexcept { return m_pixelType; }
    void setPixelType(PixelType pixelType) noexcept { m_pixelType = pixelType; }

private:
    PixelType m_pixelType = PixelType::mono8;
    DShowLib::Grabber& m_grabber;
    SinkHolder m_sink;
};

// Frames per second.
class CPropertyFrameRate final : public CProperty {
public:
    // Asks the grabber (not owned) for the highest rate of its current format.
    CPropertyFrameRate(std::string_view name, DShowLib::Grabber& grabber);

    std::int32_t getValue(char* message, char* value) override;
    // Throws std::out_of_range when the device has a list of rates that is empty.
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};

// A fixed text: an entry of the lists through which hosts discover keys.
class CFeatures final : public CProperty {
public:
    CFeatures(std::string_view label, std::string_view value);

    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    std::string m_value;
};
