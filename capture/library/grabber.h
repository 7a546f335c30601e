// SPDX-License-Identifier: MIT
// The grabber: one camera, opened, configured and streamed.
//
// An implementer supplies the struct `Implementation`, the constructor, the
// destructor, and every operation below. Operations that return bool report
// failure by false; getLastError then tells why. Lists may come back empty or
// as an empty handle.
#pragma once

#include "capture/library/export.h"
#include "capture/library/frame_sink.h"
#include "capture/library/grabber_listener.h"
#include "capture/library/handles.h"
#include "capture/library/items.h"
#include "capture/library/property_items.h"
#include "capture/library/strings.h"

namespace DShowLib {

class CAPTURE_LIBRARY_API Grabber {
public:
    struct Implementation;
    using tVidCapDevListPtr = smart_ptr<dvector<VideoCaptureDeviceItem>>;
    using tVidFmtListPtr = smart_ptr<dvector<VideoFormatItem>>;
    using tVidNrmListPtr = smart_ptr<dvector<VideoNormItem>>;
    using tInChnListPtr = smart_ptr<dvector<AnalogChannelItem>>;
    using tFPSListPtr = smart_ptr<dvector<double>>;

    Grabber();
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;
    // Closes the device.
    ~Grabber();

    // The devices that are connected now, in a stable order.
    tVidCapDevListPtr getAvailableVideoCaptureDevices_() const;
    // Replaces a device that is open already.
    bool openDev(const VideoCaptureDeviceItem& device);
    bool closeDev();
    // True while a device is open and connected.
    bool isDevValid() const;
    VideoCaptureDeviceItem getDev() const;

    // The listener is not owned, and must outlive the grabber or live video.
    bool addListener(GrabberListener* listener, ULONG eventMask);
    bool setOverlayBitmapPathPosition(ULONG path);

    // The size of the current format, in pixels.
    LONG getAcqSizeMaxX() const;
    LONG getAcqSizeMaxY() const;

    bool startLive(bool showWindow);
    // No listener is called any more once this has returned.
    bool stopLive();
    bool isLive() const;
    Error getLastError() const;

    bool setSinkType(const smart_ptr<GrabberSinkType>& sink);

    VideoFormatItem getVideoFormat() const;
    bool setVideoFormat(const VideoFormatItem& format);
    tVidFmtListPtr getAvailableVideoFormats_(const VideoNormItem& norm) const;

    VideoNormItem getVideoNorm() const;
    bool setVideoNorm(const VideoNormItem& norm);
    tVidNrmListPtr getAvailableVideoNorms_() const;

    AnalogChannelItem getInputChannel() const;
    bool setInputChannel(const AnalogChannelItem& channel);
    tInChnListPtr getAvailableInputChannels_() const;
    bool isInputChannelAvailableWithCurDev() const;

    // Frames per second.
    double getFPS() const;
    bool setFPS(double framesPerSecond);
    tFPSListPtr getAvailableFPS_(const VideoFormatItem& format) const;
    bool isFrameRateListAvailable() const;

    // An empty holder when the device has no properties.
    smart_com<IVCDPropertyItems> getAvailableVCDProperties() const;
    // Modal: returns when the user has closed the page.
    bool showVCDPropertyPage(HWND parent, const dstringa& title);

private:
    Implementation* m_implementation;
};

}  // namespace DShowLib
