// SPDX-License-Identifier: MIT
// What the grabber's device is set to: format, norm, channel, rate, properties.
#include <utility>

#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/grabber/grabber_call.h"
#include "virtual_cameras/grabber/item_values.h"
#include "virtual_cameras/live/sink.h"
#include "virtual_cameras/properties/property_objects.h"
#include "virtual_cameras/rig/rig.h"

namespace DShowLib {

using virtual_cameras::Camera;
using virtual_cameras::CGrabberCall;
using virtual_cameras::CWorldLock;
using virtual_cameras::GrabberState;
using virtual_cameras::RigFormat;

namespace {

constexpr const char* strangeItem = "The item does not belong to the device.";

// Keeps what the sink says about its frames true.
void reconnect(CWorldLock& world, GrabberState& state) {
    if (state.sink) {
        connectSink(world, *state.sink->implementation(), *state.camera);
    }
}

LONG sizeOf(const RigFormat* format, std::int32_t RigFormat::*side) {
    return format != nullptr ? format->*side : 0;
}

template <class Item, class Make>
smart_ptr<dvector<Item>> listOf(std::size_t count, Make&& make) {
    smart_ptr<dvector<Item>> list(new dvector<Item>);
    for (std::size_t i = 0; i < count; ++i) {
        list->push_back(make(i));
    }
    return list;
}

}  // namespace

LONG Grabber::getAcqSizeMaxX() const {
    CGrabberCall call("Grabber::getAcqSizeMaxX", *m_implementation);
    return call.answers(std::int32_t{0}, [&](CWorldLock& world) {
        const GrabberState& state = m_implementation->state;
        return isDeviceValid(world, state) ? static_cast<std::int32_t>(sizeOf(
                                                 state.camera->currentFormat(), &RigFormat::width))
                                           : 0;
    });
}

LONG Grabber::getAcqSizeMaxY() const {
    CGrabberCall call("Grabber::getAcqSizeMaxY", *m_implementation);
    return call.answers(std::int32_t{0}, [&](CWorldLock& world) {
        const GrabberState& state = m_implementation->state;
        return isDeviceValid(world, state) ? static_cast<std::int32_t>(sizeOf(
                                                 state.camera->currentFormat(), &RigFormat::height))
                                           : 0;
    });
}

VideoFormatItem Grabber::getVideoFormat() const {
    CGrabberCall call("Grabber::getVideoFormat", *m_implementation);
    CWorldLock world;
    const GrabberState& state = m_implementation->state;
    const bool known = call.mayGoOn(world) && isDeviceValid(world, state);
    const VideoFormatItem item =
        known ? virtual_cameras::formatItem(state.camera, state.camera->norm, state.camera->format)
              : virtual_cameras::formatItem(nullptr, 0, std::nullopt);
    return call.returnsAs(item.implementation()->name, item);
}

bool Grabber::setVideoFormat(const VideoFormatItem& format) {
    CGrabberCall call("Grabber::setVideoFormat", *m_implementation, format.implementation()->name);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (!call.hasIdleDevice(world)) {
            return false;
        }
        const auto& wanted = *format.implementation();
        if (wanted.camera != state.camera || wanted.norm != state.camera->norm) {
            return call.refusesMisuse(strangeItem);
        }
        state.camera->chooseFormat(wanted.index);
        reconnect(world, state);
        return true;
    });
}

Grabber::tVidFmtListPtr Grabber::getAvailableVideoFormats_(const VideoNormItem& norm) const {
    CGrabberCall call("Grabber::getAvailableVideoFormats_", *m_implementation,
                      norm.implementation()->name);
    return call.lists<dvector<VideoFormatItem>>([&](CWorldLock& world) {
        const std::shared_ptr<Camera>& camera = m_implementation->state.camera;
        const auto& of = *norm.implementation();
        if (!call.hasDevice(world)) {
            return tVidFmtListPtr();
        }
        if (camera->hasNorms() && of.camera != camera) {
            call.refusesMisuse(strangeItem);
            return tVidFmtListPtr();
        }
        const std::size_t normIndex = camera->hasNorms() ? of.index : 0;
        const auto& formats = camera->formatsOf(normIndex);
        if (!formats) {
            return tVidFmtListPtr();
        }
        return listOf<VideoFormatItem>(formats->size(), [&](std::size_t i) {
            return virtual_cameras::formatItem(camera, normIndex, i);
        });
    });
}

VideoNormItem Grabber::getVideoNorm() const {
    CGrabberCall call("Grabber::getVideoNorm", *m_implementation);
    CWorldLock world;
    const GrabberState& state = m_implementation->state;
    const bool known = call.mayGoOn(world) && isDeviceValid(world, state);
    const VideoNormItem item = known ? virtual_cameras::normItem(state.camera, state.camera->norm)
                                     : virtual_cameras::normItem(nullptr, std::nullopt);
    return call.returnsAs(item.implementation()->name, item);
}

bool Grabber::setVideoNorm(const VideoNormItem& norm) {
    CGrabberCall call("Grabber::setVideoNorm", *m_implementation, norm.implementation()->name);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (!call.hasIdleDevice(world)) {
            return false;
        }
        if (norm.implementation()->camera != state.camera) {
            return call.refusesMisuse(strangeItem);
        }
        state.camera->chooseNorm(norm.implementation()->index);
        reconnect(world, state);
        return true;
    });
}

Grabber::tVidNrmListPtr Grabber::getAvailableVideoNorms_() const {
    CGrabberCall call("Grabber::getAvailableVideoNorms_", *m_implementation);
    return call.lists<dvector<VideoNormItem>>([&](CWorldLock& world) {
        const std::shared_ptr<Camera>& camera = m_implementation->state.camera;
        if (!call.hasDevice(world) || !camera->rig.norms) {
            return tVidNrmListPtr();
        }
        return listOf<VideoNormItem>(camera->rig.norms->size(), [&](std::size_t i) {
            return virtual_cameras::normItem(camera, i);
        });
    });
}

AnalogChannelItem Grabber::getInputChannel() const {
    CGrabberCall call("Grabber::getInputChannel", *m_implementation);
    CWorldLock world;
    const GrabberState& state = m_implementation->state;
    const bool known = call.mayGoOn(world) && isDeviceValid(world, state);
    const AnalogChannelItem item =
        known ? virtual_cameras::channelItem(state.camera, state.camera->channel)
              : virtual_cameras::channelItem(nullptr, std::nullopt);
    return call.returnsAs(item.implementation()->name, item);
}

bool Grabber::setInputChannel(const AnalogChannelItem& channel) {
    CGrabberCall call("Grabber::setInputChannel", *m_implementation,
                      channel.implementation()->name);
    return call.tries([&](CWorldLock& world) {
        GrabberState& state = m_implementation->state;
        if (!call.hasDevice(world)) {
            return false;
        }
        if (channel.implementation()->camera != state.camera) {
            return call.refusesMisuse(strangeItem);
        }
        state.camera->channel = channel.implementation()->index;
        return true;
    });
}

Grabber::tInChnListPtr Grabber::getAvailableInputChannels_() const {
    CGrabberCall call("Grabber::getAvailableInputChannels_", *m_implementation);
    return call.lists<dvector<AnalogChannelItem>>([&](CWorldLock& world) {
        const std::shared_ptr<Camera>& camera = m_implementation->state.camera;
        if (!call.hasDevice(world) || !camera->rig.channels) {
            return tInChnListPtr();
        }
        return listOf<AnalogChannelItem>(camera->rig.channels->size(), [&](std::size_t i) {
            return virtual_cameras::channelItem(camera, i);
        });
    });
}

bool Grabber::isInputChannelAvailableWithCurDev() const {
    CGrabberCall call("Grabber::isInputChannelAvailableWithCurDev", *m_implementation);
    return call.tries([&](CWorldLock& world) {
        return call.hasDevice(world) && m_implementation->state.camera->rig.channels.has_value();
    });
}

double Grabber::getFPS() const {
    CGrabberCall call("Grabber::getFPS", *m_implementation);
    return call.answers(0.0, [&](CWorldLock& world) {
        const GrabberState& state = m_implementation->state;
        return isDeviceValid(world, state) ? state.camera->frameRate : 0.0;
    });
}

bool Grabber::setFPS(double framesPerSecond) {
    CGrabberCall call("Grabber::setFPS", *m_implementation, framesPerSecond);
    return call.tries([&](CWorldLock& world) {
        return call.hasIdleDevice(world) &&
               (m_implementation->state.camera->chooseFrameRate(framesPerSecond) ||
                call.refuses("The frame rate of the device cannot be chosen."));
    });
}

Grabber::tFPSListPtr Grabber::getAvailableFPS_(const VideoFormatItem& format) const {
    CGrabberCall call("Grabber::getAvailableFPS_", *m_implementation,
                      format.implementation()->name);
    return call.lists<dvector<double>>([&](CWorldLock& world) {
        const std::shared_ptr<Camera>& camera = m_implementation->state.camera;
        const auto& of = *format.implementation();
        if (!call.hasDevice(world)) {
            return tFPSListPtr();
        }
        if (of.camera != camera) {
            call.refusesMisuse(strangeItem);
            return tFPSListPtr();
        }
        const auto& rates = camera->ratesOf((*camera->formatsOf(of.norm))[of.index]);
        return rates ? listOf<double>(rates->size(), [&](std::size_t i) { return (*rates)[i]; })
                     : tFPSListPtr();
    });
}

bool Grabber::isFrameRateListAvailable() const {
    CGrabberCall call("Grabber::isFrameRateListAvailable", *m_implementation);
    return call.tries([&](CWorldLock& world) {
        const GrabberState& state = m_implementation->state;
        if (!call.hasDevice(world)) {
            return false;
        }
        const RigFormat* format = state.camera->currentFormat();
        return format != nullptr ? state.camera->ratesOf(*format).has_value()
                                 : state.camera->rig.frameRates.has_value();
    });
}

smart_com<IVCDPropertyItems> Grabber::getAvailableVCDProperties() const {
    CGrabberCall call("Grabber::getAvailableVCDProperties", *m_implementation);
    CWorldLock world;
    const std::shared_ptr<Camera>& camera = m_implementation->state.camera;
    if (!call.mayGoOn(world) || !call.hasDevice(world) || !camera->rig.properties) {
        return call.returnsAs("null", smart_com<IVCDPropertyItems>());
    }
    IVCDPropertyItems& items = camera->properties->itemsObject();
    items.AddRef();
    return call.returnsAs("items", smart_com<IVCDPropertyItems>(&items));
}

// There is no page to show: it is counted, its host's work done, and closed.
bool Grabber::showVCDPropertyPage(HWND parent, const dstringa& title) {
    CGrabberCall call("Grabber::showVCDPropertyPage", *m_implementation,
                      parent != nullptr ? "parent" : "null", title.c_str());
    bool isShown = false;
    virtual_cameras::PageWork host;
    {
        CWorldLock world;
        isShown = call.mayGoOn(world) && call.hasDevice(world);
        host = virtual_cameras::pageWork(world);
    }
    if (isShown) {
        virtual_cameras::pagesShown().fetch_add(1, std::memory_order_relaxed);
        if (host.work != nullptr) {
            host.work(host.context);
        }
    }
    return call.returns(isShown);
}

}  // namespace DShowLib
