// SPDX-License-Identifier: MIT
// The insides of the library's value types. Each holds what it stands for, so
// an item stays valid whatever becomes of its camera.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "capture/library/items.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/live/camera.h"

namespace virtual_cameras {

// Counts the values that are alive.
struct CountedItem {
    CountedItem() { alive().items.fetch_add(1, std::memory_order_relaxed); }
    CountedItem(const CountedItem&) : CountedItem() {}
    CountedItem& operator=(const CountedItem&) = delete;
    ~CountedItem() { alive().items.fetch_sub(1, std::memory_order_relaxed); }
};

// What stands for a part of a camera. Without one the item stands for nothing.
struct CameraPart : CountedItem {
    std::shared_ptr<Camera> camera;
    std::size_t norm = 0;
    std::size_t index = 0;
    std::string name;
    std::string text;

    std::string cameraName() const { return camera ? camera->id : std::string(); }
};

}  // namespace virtual_cameras

struct DShowLib::VideoCaptureDeviceItem::Implementation : virtual_cameras::CameraPart {};
struct DShowLib::VideoFormatItem::Implementation : virtual_cameras::CameraPart {};
struct DShowLib::VideoNormItem::Implementation : virtual_cameras::CameraPart {};
struct DShowLib::AnalogChannelItem::Implementation : virtual_cameras::CameraPart {};
struct DShowLib::Error::Implementation : virtual_cameras::CountedItem {
    std::string text;
};

namespace virtual_cameras {

// A null camera makes an item that stands for nothing.
DShowLib::VideoCaptureDeviceItem deviceItem(const std::shared_ptr<Camera>& camera);
// Without an index the item stands for nothing.
DShowLib::VideoFormatItem formatItem(const std::shared_ptr<Camera>& camera, std::size_t norm,
                                     std::optional<std::size_t> index);
DShowLib::VideoNormItem normItem(const std::shared_ptr<Camera>& camera,
                                 std::optional<std::size_t> index);
DShowLib::AnalogChannelItem channelItem(const std::shared_ptr<Camera>& camera,
                                        std::optional<std::size_t> index);
DShowLib::Error errorItem(const std::string& text);

}  // namespace virtual_cameras
