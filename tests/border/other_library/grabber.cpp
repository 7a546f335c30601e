// SPDX-License-Identifier: MIT
// The grabber of the other capture library, its start and its end.
#include "capture/library/grabber.h"

#include <atomic>
#include <thread>

#include "capture/library/library.h"
#include "tests/border/other_library/brightness.h"
#include "tests/border/other_library/buffers.h"

// First of all exports by name, so that every other one stands elsewhere than in
// the list that the adapter was linked with.
extern "C" CAPTURE_LIBRARY_API std::int32_t OtherMakerStartsWithoutEnd();

namespace {

std::atomic<std::int32_t> startsWithoutEnd{0};

}  // namespace

// How often the library was started and not ended.
std::int32_t OtherMakerStartsWithoutEnd() {
    return startsWithoutEnd;
}

namespace DShowLib {

bool InitLibrary() {
    ++startsWithoutEnd;
    return true;
}
void ExitLibrary() {
    --startsWithoutEnd;
}

struct Grabber::Implementation {
    // A frame a millisecond, until told to stop.
    void deliver(Grabber& grabber) {
        constexpr DWORD frameMilliseconds = 1;
        std::uint32_t frame = 0;
        while (::WaitForSingleObject(stop, frameMilliseconds) == WAIT_TIMEOUT) {
            ++frame;
            if (auto buffer = sink->implementation()->ring->fill(frame); buffer) {
                listener->frameReady(grabber, buffer, frame);
            }
        }
    }

    void end() {
        if (delivery.joinable()) {
            ::SetEvent(stop);
            delivery.join();
            ::ResetEvent(stop);
        }
    }

    bool open = false;
    GrabberListener* listener = nullptr;
    smart_ptr<GrabberSinkType> sink;
    HANDLE stop = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread delivery;
};

Grabber::Grabber() : m_implementation(new Implementation) {}
Grabber::~Grabber() {
    m_implementation->end();
    ::CloseHandle(m_implementation->stop);
    delete m_implementation;
}

Grabber::tVidCapDevListPtr Grabber::getAvailableVideoCaptureDevices_() const {
    auto* devices = new dvector<VideoCaptureDeviceItem>;
    devices->push_back(VideoCaptureDeviceItem(nullptr));
    return tVidCapDevListPtr(devices);
}
bool Grabber::openDev(const VideoCaptureDeviceItem& /*device*/) {
    m_implementation->open = true;
    return true;
}
bool Grabber::closeDev() {
    m_implementation->end();
    m_implementation->open = false;
    return true;
}
bool Grabber::isDevValid() const {
    return m_implementation->open;
}
VideoCaptureDeviceItem Grabber::getDev() const {
    return VideoCaptureDeviceItem(nullptr);
}

bool Grabber::addListener(GrabberListener* listener, ULONG /*eventMask*/) {
    m_implementation->listener = listener;
    return true;
}
bool Grabber::setOverlayBitmapPathPosition(ULONG /*path*/) {
    return true;
}
LONG Grabber::getAcqSizeMaxX() const {
    return 64;
}
LONG Grabber::getAcqSizeMaxY() const {
    return 48;
}

bool Grabber::startLive(bool /*showWindow*/) {
    m_implementation->delivery = std::thread([this] { m_implementation->deliver(*this); });
    return true;
}
bool Grabber::stopLive() {
    m_implementation->end();
    return true;
}
bool Grabber::isLive() const {
    return m_implementation->delivery.joinable();
}
Error Grabber::getLastError() const {
    return Error(nullptr);
}
bool Grabber::setSinkType(const smart_ptr<GrabberSinkType>& sink) {
    m_implementation->sink = sink;
    return true;
}

VideoFormatItem Grabber::getVideoFormat() const {
    return VideoFormatItem(nullptr);
}
bool Grabber::setVideoFormat(const VideoFormatItem& /*format*/) {
    return true;
}
Grabber::tVidFmtListPtr Grabber::getAvailableVideoFormats_(const VideoNormItem& /*norm*/) const {
    auto* formats = new dvector<VideoFormatItem>;
    formats->push_back(VideoFormatItem(nullptr));
    return tVidFmtListPtr(formats);
}
VideoNormItem Grabber::getVideoNorm() const {
    return VideoNormItem(nullptr);
}
bool Grabber::setVideoNorm(const VideoNormItem& /*norm*/) {
    return false;
}
Grabber::tVidNrmListPtr Grabber::getAvailableVideoNorms_() const {
    return {};
}
AnalogChannelItem Grabber::getInputChannel() const {
    return AnalogChannelItem(nullptr);
}
bool Grabber::setInputChannel(const AnalogChannelItem& /*channel*/) {
    return false;
}
Grabber::tInChnListPtr Grabber::getAvailableInputChannels_() const {
    return {};
}
bool Grabber::isInputChannelAvailableWithCurDev() const {
    return false;
}

double Grabber::getFPS() const {
    return 30.0;
}
bool Grabber::setFPS(double /*framesPerSecond*/) {
    return true;
}
Grabber::tFPSListPtr Grabber::getAvailableFPS_(const VideoFormatItem& /*format*/) const {
    auto* rates = new dvector<double>;
    rates->push_back(30.0);
    return tFPSListPtr(rates);
}
bool Grabber::isFrameRateListAvailable() const {
    return true;
}

smart_com<IVCDPropertyItems> Grabber::getAvailableVCDProperties() const {
    return smart_com<IVCDPropertyItems>(other_library::brightnessItems());
}
bool Grabber::showVCDPropertyPage(HWND /*parent*/, const dstringa& /*title*/) {
    return true;
}

}  // namespace DShowLib
