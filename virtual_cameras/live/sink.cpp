// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/sink.h"

#include <algorithm>
#include <memory>

#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/live/buffers.h"
#include "virtual_cameras/live/camera.h"
#include "virtual_cameras/live/frame_types.h"
#include "virtual_cameras/rig/identifiers.h"

namespace virtual_cameras {

namespace {

constexpr DShowLib::FrameTypeInfo anyType{};

bool sizeFits(const DShowLib::FrameTypeInfo& type, const RigFormat& format) {
    return (type.width == 0 || type.width == format.width) &&
           (type.height == 0 || type.height == format.height);
}

std::optional<PictureShape> shapeOf(const DShowLib::FrameTypeInfo& type, const Camera& camera) {
    const RigFormat* format = camera.currentFormat();
    if (format == nullptr || !sizeFits(type, *format)) {
        return std::nullopt;
    }
    const auto form = pixelFormFor(type.subtype, format->text, camera.rig.colour);
    if (!form) {
        return std::nullopt;
    }
    return PictureShape{format->width, format->height, *form, camera.rig.bayer, camera.rig.colour};
}

// The accepted type that the frames will have, and their shape.
std::optional<PictureShape> chooseType(const SinkState& sink, const Camera& camera,
                                       DShowLib::FrameTypeInfo& chosen) {
    if (sink.data.frameTypes.empty()) {
        chosen = anyType;
        return shapeOf(anyType, camera);
    }
    for (const DShowLib::FrameTypeInfo& type : sink.data.frameTypes) {
        if (const auto shape = shapeOf(type, camera)) {
            chosen = type;
            return shape;
        }
    }
    return std::nullopt;
}

std::uint32_t smallestBuffer(const DShowLib::MemBufferCollection::Implementation& ring) {
    std::uint32_t smallest = ring.buffers.empty() ? 0 : ring.buffers.front().buffer->size;
    for (const auto& entry : ring.buffers) {
        smallest = std::min(smallest, entry.buffer->size);
    }
    return smallest;
}

std::uint32_t typeCount(const DShowLib::FrameHandlerSink::tCreateData& data) {
    return data.frameTypes.size();
}

std::string firstSubtype(const DShowLib::FrameHandlerSink::tCreateData& data) {
    return data.frameTypes.empty() ? std::string("any")
                                   : identifierText(data.frameTypes[0].subtype);
}

}  // namespace

std::optional<PictureShape> shapeFor(CWorldLock&, const SinkState& sink, const Camera& camera) {
    DShowLib::FrameTypeInfo type{};
    return chooseType(sink, camera, type);
}

bool connectSink(CWorldLock&, SinkState& sink, const Camera& camera) {
    DShowLib::FrameTypeInfo type{};
    const auto shape = chooseType(sink, camera, type);
    sink.connected = false;
    if (!shape) {
        return false;
    }
    const auto bytes = static_cast<std::uint32_t>(pictureBytes(*shape));
    const auto* ring = sink.ring ? insideOf(*sink.ring) : nullptr;
    if (sink.data.userCollection) {
        ring = insideOf(*sink.data.userCollection);
        if (ring == nullptr || smallestBuffer(*ring) < bytes) {
            return false;
        }
        sink.ring = sink.data.userCollection;
    } else if (ring == nullptr || smallestBuffer(*ring) != bytes) {
        // Buffers of another size may still be held by callers, so they stay as they are.
        sink.ring = makeRing(sink.data.bufferCount, bytes);
        sink.nextBuffer = 0;
    }
    sink.output = {subtypeOf(shape->form, type.subtype), shape->width, shape->height, bytes};
    sink.connected = true;
    return true;
}

}  // namespace virtual_cameras

namespace DShowLib {

using virtual_cameras::alive;
using virtual_cameras::CLibraryCall;
using virtual_cameras::countMisuse;
using virtual_cameras::CWorldLock;
using virtual_cameras::libraryIsReady;
using virtual_cameras::NoCamera;

GrabberSinkType::GrabberSinkType(Implementation* adopted) noexcept : m_implementation(adopted) {
    alive().sinks.fetch_add(1, std::memory_order_relaxed);
}

GrabberSinkType::~GrabberSinkType() {
    alive().sinks.fetch_sub(1, std::memory_order_relaxed);
    delete m_implementation;
}

FrameHandlerSink::FrameHandlerSink(Implementation* adopted) noexcept : GrabberSinkType(adopted) {}

FrameHandlerSink::~FrameHandlerSink() {
    if (virtual_cameras::callLog().isOn()) {
        virtual_cameras::callLog().add({}, "FrameHandlerSink::~FrameHandlerSink", {}, {});
    }
}

smart_ptr<FrameHandlerSink> FrameHandlerSink::create(const tCreateData& data) {
    CLibraryCall call("FrameHandlerSink::create", NoCamera(), data.bufferCount,
                      virtual_cameras::typeCount(data), virtual_cameras::firstSubtype(data));
    if (!libraryIsReady() || (data.bufferCount == 0 && !data.userCollection)) {
        countMisuse(libraryIsReady() ? "FrameHandlerSink::create without buffers"
                                     : "FrameHandlerSink::create outside InitLibrary");
        return call.returnsAs("null", smart_ptr<FrameHandlerSink>());
    }
    if (call.fails()) {
        return call.returnsAs("null", smart_ptr<FrameHandlerSink>());
    }
    auto inside = std::make_unique<Implementation>();
    inside->data = data;
    return call.returnsAs("sink",
                          smart_ptr<FrameHandlerSink>(new FrameHandlerSink(inside.release())));
}

void FrameHandlerSink::setSnapMode(bool snap) {
    CLibraryCall call("FrameHandlerSink::setSnapMode", NoCamera(), snap);
    if (!call.fails()) {
        const CWorldLock world;
        implementation()->snap = snap;
    }
    call.returns();
}

bool FrameHandlerSink::getOutputFrameType(FrameTypeInfo& frameType) const {
    CLibraryCall call("FrameHandlerSink::getOutputFrameType", NoCamera());
    if (call.fails()) {
        return call.returns(false);
    }
    const CWorldLock world;
    if (implementation()->connected) {
        frameType = implementation()->output;
    }
    return call.returns(implementation()->connected);
}

smart_ptr<MemBufferCollection> FrameHandlerSink::getMemBufferCollection() const {
    CLibraryCall call("FrameHandlerSink::getMemBufferCollection", NoCamera());
    if (call.fails()) {
        return call.returnsAs("null", smart_ptr<MemBufferCollection>());
    }
    const CWorldLock world;
    return call.returnsAs(implementation()->ring ? "buffers" : "null", implementation()->ring);
}

}  // namespace DShowLib
