// SPDX-License-Identifier: MIT
// Settings that name and choose the device's video format, video norm and input
// channel. Lists are fetched afresh at every call.
#pragma once

#include "properties/property.h"

// The current video format. A set that finds its format asks for a new sink.
class CPropertyVideoFormat final : public CProperty {
public:
    CPropertyVideoFormat(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
    DShowLib::smart_ptr<DShowLib::FrameHandlerSink> m_sink;  // stays empty
};

// The current video norm. A set chooses the last format of the new norm, and
// unlike a format set asks for no new sink. Throws std::out_of_range when the
// new norm offers no format.
class CPropertyVideoNorm final : public CProperty {
public:
    CPropertyVideoNorm(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    void chooseNorm(const DShowLib::VideoNormItem& norm);

    DShowLib::Grabber& m_grabber;
};

// The current input channel; it may change while live.
class CPropertyInputChannel final : public CProperty {
public:
    CPropertyInputChannel(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};
