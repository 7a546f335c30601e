// SPDX-License-Identifier: MIT
// Settings that choose, name and list the device's video formats, video norms and
// input channels. Lists are fetched afresh at every call.
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

// The lists refuse every set with the same message.

// All formats of the current norm, comma separated.
class CPropertyVideoFormats final : public CProperty {
public:
    CPropertyVideoFormats(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};

// The format whose index ends the property's own name, "videoformat_3"; empty
// past the end of the list.
class CPropertyVideoFormatAt final : public CProperty {
public:
    CPropertyVideoFormatAt(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};

// All video norms, comma separated.
class CPropertyVideoNorms final : public CProperty {
public:
    CPropertyVideoNorms(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};

// All input channels, comma separated.
class CPropertyInputChannels final : public CProperty {
public:
    CPropertyInputChannels(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t getValue(char* message, char* value) override;
    std::int32_t setValue(char* message, std::string_view value) override;

private:
    DShowLib::Grabber& m_grabber;
};
