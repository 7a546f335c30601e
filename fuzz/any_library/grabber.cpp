// SPDX-License-Identifier: MIT
// The grabber, and the library's start and end.
#include "capture/library/grabber.h"

#include <algorithm>
#include <limits>

#include "capture/library/library.h"
#include "fuzz/any_library/items.h"
#include "fuzz/any_library/live.h"
#include "fuzz/any_library/texts.h"
#include "fuzz/input/fuzz_input.h"

namespace any_library {

namespace {

void (*pageWork)() = nullptr;

bool isOrdinary(Manner manner) {
    return manner == Manner::ordinary;
}
// A success that did nothing counts as one of the ways.
bool succeeds(Manner manner) {
    return manner != Manner::refused && manner != Manner::null && manner != Manner::empty;
}

template <class Item>
Item itemOf(std::uint8_t text) {
    const Manner manner = beginCall();
    if (manner == Manner::null || manner == Manner::refused) {
        return Item(nullptr);
    }
    return Item(new typename Item::Implementation(
        isOrdinary(manner) ? text : strangeText(answers().detail())));
}

// Keeps what was chosen, where the call does what it is asked for.
template <class Item>
bool choose(std::uint8_t& chosen, const Item& item) {
    const Manner manner = beginCall();
    if (isOrdinary(manner) && item.implementation() != nullptr) {
        chosen = item.implementation()->text;
    }
    return succeeds(manner);
}

std::initializer_list<std::uint8_t> formatTexts() {
    static const std::initializer_list<std::uint8_t> all[] = {{greyFormat, colorFormat},
                                                              {greyFormat},
                                                              {colorFormat},
                                                              {rawFormat, greyFormat},
                                                              {},
                                                              {5, 4, 5},
                                                              {8, 8, 8},
                                                              {9, 10, 11},
                                                              {6, 6, 6, 6},
                                                              {7, 1, 0},
                                                              {0, 0, 15, 14},
                                                              {13}};
    return all[world().formats % std::size(all)];
}

std::initializer_list<std::uint8_t> nameTexts(std::uint8_t choice) {
    static const std::initializer_list<std::uint8_t> all[] = {
        {}, {3}, {15, 3, 15}, {5}, {9, 8, 10}, {8, 8, 8, 8}, {4, 4}, {0, 1, 2}};
    return all[choice % std::size(all)];
}

}  // namespace

void setPageWork(void (*work)()) {
    pageWork = work;
}

void deliverTo(OpenGrabber open, std::uint8_t detail) {
    DShowLib::Grabber::Implementation& inside = *open.inside;
    if (inside.listener == nullptr) {
        return;
    }
    DShowLib::smart_ptr<DShowLib::MemBuffer> buffer;
    switch (detail % 4) {
        case 1:
            break;
        case 2:
            buffer = makeBuffer(SinkKind::color);
            break;
        case 3:
            inside.listener->deviceLost(*open.grabber);
            return;
        default:
            if (inside.sink) {
                buffer = inside.sink->implementation()->ring->next();
            }
            break;
    }
    try {
        inside.listener->frameReady(*open.grabber, buffer, ++inside.frames);
    } catch (...) {
        // What the library threw itself, it gets back.
    }
}

}  // namespace any_library

namespace DShowLib {

using namespace any_library;

bool InitLibrary() {
    require(!world().isStarted, "the library is started once");
    world().isStarted = true;
    try {
        return succeeds(beginCall());
    } catch (...) {
        world().isStarted = false;
        throw;
    }
}
void ExitLibrary() {
    require(world().alive.grabbers == 0, "no grabber outlives the library");
    // Asked for again where nothing has been started since.
    world().isStarted = true;
    const auto end = [] { world().isStarted = false; };
    try {
        beginCall();
    } catch (...) {
        end();
        throw;
    }
    end();
}

Grabber::Grabber() : m_implementation((beginCall(), new Implementation)) {
    world().grabbers.push_back({this, m_implementation});
    ++world().alive.grabbers;
}
Grabber::~Grabber() {
    if (world().isStubborn) {
        deliverTo({this, m_implementation}, 0);
    }
    std::erase_if(world().grabbers,
                  [this](const OpenGrabber& open) { return open.grabber == this; });
    --world().alive.grabbers;
    delete m_implementation;
}

Grabber::tVidCapDevListPtr Grabber::getAvailableVideoCaptureDevices_() const {
    const Manner manner = beginCall();
    static const std::initializer_list<std::uint8_t> all[] = {{3},    {3, 12},   {},        {12},
                                                              {5, 9}, {8, 7, 6}, {3, 3, 3}, {13}};
    return listOf<VideoCaptureDeviceItem>(manner, all[world().devices % std::size(all)]);
}
bool Grabber::openDev(const VideoCaptureDeviceItem& device) {
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->isOpen = world().isPresent;
        m_implementation->isLive = false;
        m_implementation->device =
            device.implementation() != nullptr ? device.implementation()->text : 4;
    }
    return succeeds(manner);
}
bool Grabber::closeDev() {
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->isOpen = false;
        m_implementation->isLive = false;
    }
    return succeeds(manner);
}
bool Grabber::isDevValid() const {
    const Manner manner = beginCall();
    if (!world().isPresent) {
        // Lost: only another openDev brings it back.
        m_implementation->isOpen = false;
        m_implementation->isLive = false;
    }
    return isOrdinary(manner) == m_implementation->isOpen;
}
VideoCaptureDeviceItem Grabber::getDev() const {
    return itemOf<VideoCaptureDeviceItem>(m_implementation->device);
}

bool Grabber::addListener(GrabberListener* listener, ULONG /*eventMask*/) {
    const Manner manner = beginCall();
    if (succeeds(manner)) {
        m_implementation->listener = listener;
    }
    return succeeds(manner);
}
bool Grabber::setOverlayBitmapPathPosition(ULONG /*path*/) {
    return succeeds(beginCall());
}
LONG Grabber::getAcqSizeMaxX() const {
    world().toldWidth = isOrdinary(beginCall()) ? world().width : answers().detail() - 3;
    return world().toldWidth;
}
LONG Grabber::getAcqSizeMaxY() const {
    world().toldHeight = isOrdinary(beginCall()) ? world().height : answers().detail() - 3;
    return world().toldHeight;
}

bool Grabber::startLive(bool /*showWindow*/) {
    ++world().liveStarts;
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->isLive = !world().isStubborn;
    }
    return succeeds(manner);
}
bool Grabber::stopLive() {
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->isLive = world().isStubborn;
    }
    return succeeds(manner);
}
bool Grabber::isLive() const {
    return isOrdinary(beginCall()) == m_implementation->isLive;
}
Error Grabber::getLastError() const {
    return itemOf<Error>(3);
}

bool Grabber::setSinkType(const smart_ptr<GrabberSinkType>& sink) {
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->sink = sink;
    }
    return succeeds(manner);
}

VideoFormatItem Grabber::getVideoFormat() const {
    return itemOf<VideoFormatItem>(m_implementation->format);
}
bool Grabber::setVideoFormat(const VideoFormatItem& format) {
    return choose(m_implementation->format, format);
}
Grabber::tVidFmtListPtr Grabber::getAvailableVideoFormats_(const VideoNormItem& /*norm*/) const {
    return listOf<VideoFormatItem>(beginCall(), formatTexts());
}
VideoNormItem Grabber::getVideoNorm() const {
    return itemOf<VideoNormItem>(m_implementation->norm);
}
bool Grabber::setVideoNorm(const VideoNormItem& norm) {
    return choose(m_implementation->norm, norm);
}
Grabber::tVidNrmListPtr Grabber::getAvailableVideoNorms_() const {
    return listOf<VideoNormItem>(beginCall(), nameTexts(world().norms));
}
AnalogChannelItem Grabber::getInputChannel() const {
    return itemOf<AnalogChannelItem>(m_implementation->channel);
}
bool Grabber::setInputChannel(const AnalogChannelItem& channel) {
    return choose(m_implementation->channel, channel);
}
Grabber::tInChnListPtr Grabber::getAvailableInputChannels_() const {
    return listOf<AnalogChannelItem>(beginCall(), nameTexts(world().channels));
}
bool Grabber::isInputChannelAvailableWithCurDev() const {
    return isOrdinary(beginCall()) == (world().channels != 0);
}

double Grabber::getFPS() const {
    if (isOrdinary(beginCall())) {
        return m_implementation->rate;
    }
    return std::numeric_limits<double>::infinity();
}
bool Grabber::setFPS(double framesPerSecond) {
    const Manner manner = beginCall();
    if (isOrdinary(manner)) {
        m_implementation->rate = framesPerSecond;
    }
    return succeeds(manner);
}
Grabber::tFPSListPtr Grabber::getAvailableFPS_(const VideoFormatItem& /*format*/) const {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
    static const std::initializer_list<double> all[] = {{30.0, 15.0, 7.5}, {},
                                                        {nothing},         {-infinite, infinite},
                                                        {1e308, -1e308},   {0.004999, 2e9},
                                                        {5e-324, 0.0},     {60.0}};
    const Manner manner = beginCall();
    if (!succeeds(manner) && manner != Manner::empty) {
        return {};
    }
    tFPSListPtr list(new dvector<double>);
    if (manner != Manner::empty) {
        for (const double rate : all[world().rates % std::size(all)]) {
            list->push_back(rate);
        }
    }
    return list;
}
bool Grabber::isFrameRateListAvailable() const {
    return isOrdinary(beginCall());
}

smart_com<IVCDPropertyItems> Grabber::getAvailableVCDProperties() const {
    return succeeds(beginCall()) ? world().properties : smart_com<IVCDPropertyItems>();
}
bool Grabber::showVCDPropertyPage(HWND /*parent*/, const dstringa& /*title*/) {
    const Manner manner = beginCall();
    if (pageWork != nullptr) {
        pageWork();
    }
    return succeeds(manner);
}

}  // namespace DShowLib
