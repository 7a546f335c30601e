// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/listeners.h"

#include "virtual_cameras/calls/call_log.h"
#include "virtual_cameras/calls/library_call.h"

namespace virtual_cameras {

namespace {

constexpr ULONG eventFrameReady = 1;
constexpr ULONG eventFrameDropped = 2;
constexpr ULONG eventOverlay = 4;
constexpr ULONG eventDeviceLost = 8;

}  // namespace

void tellFrameDropped(const std::vector<Listener>& listeners, const FrameNews& news,
                      const DShowLib::smart_ptr<DShowLib::MemBuffer>& buffer) {
    for (const Listener& entry : listeners) {
        if ((entry.events & eventFrameDropped) != 0) {
            entry.listener->frameDropped(news.owner, buffer, news.number);
        }
    }
    if (callLog().isOn()) {
        callLog().add(news.camera, "GrabberListener::frameDropped", textOf(news.number), {});
    }
}

void tellFrameReady(const std::vector<Listener>& listeners, const FrameNews& news,
                    DShowLib::smart_ptr<DShowLib::MemBuffer>& buffer, std::uint32_t bufferIndex,
                    bool overlay) {
    for (const Listener& entry : listeners) {
        if (overlay && (entry.events & eventOverlay) != 0) {
            entry.listener->overlayCallback(news.owner, buffer);
        }
        if ((entry.events & eventFrameReady) != 0) {
            entry.listener->frameReady(news.owner, buffer, news.number);
        }
    }
    if (callLog().isOn()) {
        callLog().add(news.camera, "GrabberListener::frameReady",
                      textOf(news.number) + "," + textOf(bufferIndex), {});
    }
}

void tellDeviceLost(const std::vector<Listener>& listeners, DShowLib::Grabber& owner,
                    const std::string& camera) {
    for (const Listener& entry : listeners) {
        if ((entry.events & eventDeviceLost) != 0) {
            entry.listener->deviceLost(owner);
        }
    }
    if (callLog().isOn()) {
        callLog().add(camera, "GrabberListener::deviceLost", {}, {});
    }
}

}  // namespace virtual_cameras
