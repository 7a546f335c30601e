// SPDX-License-Identifier: MIT
// CVideoChannel: one camera, and the context that the host passes to every entry
// point.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "acquisition/frame_delivery.h"
#include "acquisition/frame_sink.h"
#include "acquisition/listener.h"
#include "capture/capture_library.h"
#include "properties/camera_parameters.h"
#include "properties/property.h"
#include "properties/property_tables.h"
#include "velmora/host_blocks.h"

// It owns its parts and keeps the order of things between them: video_channel.cpp for
// its life, video_channel_settings.cpp and video_channel_frames.cpp for the rest.
//
// Everything runs on the host thread, one call at a time, but for the listener's
// frameReady.
//
// Operations for the host take its text buffer first (256 bytes, or null for
// none), write a message only where there is something to report, and return
// HOST_RESULT_SUCCESS or HOST_RESULT_FAILURE. Null texts count as empty; null
// outputs are not written. A failing result code of a device-property interface
// leaves as a thrown 32-bit integer, an index outside the library's lists as
// std::out_of_range, and a text that the library throws as it is; only
// SetPropertyValue lets nothing out.
class CVideoChannel {
public:
    // Opens the device and takes its first readings. A device that does not open
    // still gets a channel, whose operations report that there is no device.
    explicit CVideoChannel(DShowLib::VideoCaptureDeviceItem item);
    CVideoChannel(const CVideoChannel&) = delete;
    CVideoChannel& operator=(const CVideoChannel&) = delete;
    // Stops live video first, so that no frame meets a destroyed listener.
    ~CVideoChannel();

    // Facts for the host's record: as they were at construction, but for the size,
    // which every start takes again.
    const char* deviceName() const noexcept { return m_deviceName.data(); }
    const char* serialText() const noexcept { return m_serialText.c_str(); }
    double exposure() const noexcept { return m_parameters.exposure(); }
    double contrast() const noexcept { return m_parameters.contrast(); }
    double brightness() const noexcept { return m_parameters.brightness(); }
    std::int32_t width() const noexcept { return m_width; }
    std::int32_t height() const noexcept { return m_height; }

    // Settings: video_channel_settings.cpp.
    std::int32_t GetPropertyValue(char* errorText, const char* key, char* value);
    std::int32_t SetPropertyValue(char* errorText, const char* key, const char* value);
    std::int32_t GetPropertyName(char* errorText, std::int32_t index, char* name);
    std::int32_t GetPropertyType(char* errorText, const char* key, std::uint32_t* type);
    std::int32_t GetPropertyChoice(char* errorText, const char* key, std::int32_t index,
                                   char* choice);
    std::int32_t GetPropertyAttribute(char* errorText, const char* key, std::uint32_t attribute,
                                      char* text);
    std::int32_t ExecuteCommand(char* errorText, const char* command);
    std::int32_t SetCameraParameters(char* errorText, const CameraParameterBlock* parameters);

    // Frames: video_channel_frames.cpp.
    std::int32_t StartAcquisition(char* errorText);
    std::int32_t StopAcquisition(char* errorText);
    std::int32_t WaitFrame(char* errorText, std::uint32_t* status);
    std::int32_t GetImageInfo(char* errorText, ImageInfo* image, std::uint32_t* status);
    std::int32_t CopyFrame(char* errorText, void* destination, std::uint32_t* status);

private:
    void openDevice(const DShowLib::VideoCaptureDeviceItem& item);
    void writeSerialText();
    void takeSize();
    bool CheckDevice();
    FrameShape frameShape() const noexcept;

    // Constant once constructed.
    std::array<char, 255> m_deviceName{};
    std::string m_serialText;
    bool m_rawUnshifted = false;    // raw frames of this model are copied without the shift
    HANDLE m_frameEvent = nullptr;  // manual reset; never closed: a channel dies at most once
    CPropertyPixelFormat* m_pixelFormat = nullptr;  // lives to the end of the process

    // Taken at construction and at every successful start, in pixels.
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
    // A device that came back, or was started without telling its size, may have another
    // format than the host knows of.
    bool m_sizeMayBeOld = false;

    // Shared with the delivery thread. Outlives the grabber, which is the last to deliver.
    CListener m_listener;

    // From here on the order is that of destruction, backwards: the grabber, which closes
    // the device, goes last.
    DShowLib::Grabber m_grabber;
    CFrameSink m_sink{m_grabber};
    DShowLib::smart_com<IUnknown> m_auxHandle;  // nothing fills it
    CPropertyTables m_tables;
    CCameraParameters m_parameters{m_grabber, m_tables};
};
