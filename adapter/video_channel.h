// SPDX-License-Identifier: MIT
// CVideoChannel: one camera, and the context that the host passes to every entry
// point.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "acquisition/listener.h"
#include "capture/capture_library.h"
#include "properties/executables.h"
#include "properties/property.h"
#include "velmora/host_blocks.h"

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
    double exposure() const noexcept { return m_exposure; }
    double contrast() const noexcept { return m_contrast; }
    double brightness() const noexcept { return m_brightness; }
    std::int32_t width() const noexcept { return m_width; }
    std::int32_t height() const noexcept { return m_height; }

    // properties/host_properties.cpp
    std::int32_t GetPropertyValue(char* errorText, const char* key, char* value);
    std::int32_t SetPropertyValue(char* errorText, const char* key, const char* value);

    // properties/host_description.cpp
    std::int32_t GetPropertyName(char* errorText, std::int32_t index, char* name);
    std::int32_t GetPropertyType(char* errorText, const char* key, std::uint32_t* type);
    std::int32_t GetPropertyChoice(char* errorText, const char* key, std::int32_t index,
                                   char* choice);
    std::int32_t GetPropertyAttribute(char* errorText, const char* key, std::uint32_t attribute,
                                      char* text);

    // properties/host_commands.cpp
    std::int32_t ExecuteCommand(char* errorText, const char* command);
    std::int32_t SetCameraParameters(char* errorText, const CameraParameterBlock* parameters);

    // acquisition/acquisition_control.cpp
    std::int32_t StartAcquisition(char* errorText);
    std::int32_t StopAcquisition(char* errorText);
    std::int32_t WaitFrame(char* errorText, std::uint32_t* status);

    // acquisition/frame_delivery.cpp
    std::int32_t GetImageInfo(char* errorText, ImageInfo* image, std::uint32_t* status);
    std::int32_t CopyFrame(char* errorText, void* destination, std::uint32_t* status);

private:
    // adapter/video_channel.cpp
    void openDevice(const DShowLib::VideoCaptureDeviceItem& item);
    void noticeQuirks(const DShowLib::VideoCaptureDeviceItem& item);
    double readFraction(const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items,
                        std::string_view key, const GUID& itemId) const;
    double readExposure() const;

    // acquisition/frame_sink_setup.cpp
    void SelectDefaultVideoFormat();
    void CreateNewSink();

    // acquisition/frame_delivery.cpp
    void copyPixels(const DShowLib::MemBuffer& frame, std::uint8_t* destination) const;
    void CopyRaw8(const DShowLib::MemBuffer& frame, std::uint8_t* destination) const;

    // acquisition/acquisition_control.cpp
    bool CheckDevice();
    bool restoreDevice();
    void resumeLive();
    void restoreTrigger();
    void unlockRing();

    // properties/property_table.cpp
    void buildPropertyTable();
    void addDeviceProperties(DShowLib::IVCDPropertyItems& items);
    void addVCDInterfaces(DShowLib::IVCDPropertyItem& item, DShowLib::IVCDPropertyElement& element);
    void addVCDInterface(const GUID& interfaceId, std::string_view baseKey, const GUID& itemId,
                         const GUID& elementId);
    template <class Value, class Minimum, class Maximum>
    void addRanged(std::string_view baseKey, std::string_view suffix, const GUID& itemId,
                   const GUID& elementId);
    template <class Property>
    void addSingle(std::string_view baseKey, std::string_view suffix, const GUID& itemId,
                   const GUID& elementId);
    void addFixedProperties();
    void addListEntries();
    std::string makeUniqueName(std::string_view key) const;
    // Null when there is no such key. Keys are matched exactly.
    CProperty* findProperty(std::string_view key) const;
    CExecute* findExecute(std::string_view key) const;
    bool hasProperty(std::string_view key) const { return findProperty(key) != nullptr; }

    // properties/host_commands.cpp
    void setRangeFraction(std::string_view key, double fraction);
    void setExposure(double exposure);
    void setTrigger(std::int32_t enable, std::int32_t polarity);
    void storeRegion(const CameraParameterBlock& parameters);
    void writeSerialText();

    bool m_triggerEnabled = false;
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
    double m_contrast = -1.0;
    double m_brightness = -1.0;
    double m_exposure = -1.0;
    std::array<char, 255> m_deviceName{};
    std::string m_serialText;
    // Kept for the host; nothing applies it.
    std::int32_t m_roiLeft = 0;
    std::int32_t m_roiTop = 0;
    std::int32_t m_roiWidth = 0;
    std::int32_t m_roiHeight = 0;
    // Manual reset. Never closed: a channel dies at most once per process.
    HANDLE m_frameEvent = nullptr;
    // Outlives the grabber, which is the last to deliver.
    CListener m_listener;
    // From here on the order is that of destruction, backwards: the grabber, which
    // closes the device, goes last.
    DShowLib::Grabber m_grabber;
    DShowLib::smart_ptr<DShowLib::FrameHandlerSink> m_sink;
    DShowLib::smart_com<IUnknown> m_auxHandle;
    // Keys in byte order. The objects live to the end of the process.
    std::map<std::string, CProperty*, std::less<>> m_properties;
    std::map<std::string, CExecute*, std::less<>> m_executes;
    CPropertyPixelFormat* m_pixelFormat = nullptr;
    // The Raw8 pixel type comes from an RGB32 sink.
    bool m_rawFromRgb32 = false;
    // Raw8 frames of this camera are copied without the shift.
    bool m_rawUnshifted = false;
};
