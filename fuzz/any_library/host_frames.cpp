// SPDX-License-Identifier: MIT
// The host's calls about frames, and what it may rely on.
#include <algorithm>
#include <limits>
#include <memory>

#include "fuzz/any_library/host.h"
#include "fuzz/any_library/live.h"
#include "fuzz/any_library/world.h"
#include "tests/win32/win32_log.h"

namespace any_library {

namespace {

// Bytes of the host's own, exactly as many as there have to be.
class CBytes {
public:
    explicit CBytes(std::size_t size) : m_bytes(std::make_unique<std::uint8_t[]>(size)) {}
    void* data() { return m_bytes.get(); }

private:
    std::unique_ptr<std::uint8_t[]> m_bytes;
};

}  // namespace

void CHost::startAcquisition() {
    CFuzzBuffer message;
    const std::size_t which = m_who % m_channels.size();
    const std::uint32_t before = world().liveStarts;
    const std::int32_t result = guarded(
        [&] { return m_channels[which].record.StartAcquisition(message.data(), context()); });
    require(message.isWhole(), "a message is whole");
    const void* started = m_channels[which].record.context;
    if (result == HOST_RESULT_SUCCESS) {
        require(world().liveStarts == before + 1, "a start starts");
        changeAll(started, [](Channel& channel) {
            channel.width = world().toldWidth;
            channel.height = world().toldHeight;
            channel.isRestored = false;
            channel.isResized = false;
        });
    } else if (world().liveStarts != before) {
        // Live, perhaps, without having told its size.
        changeAll(started, [](Channel& channel) { channel.isRestored = true; });
    }
}

void CHost::answerWait() const {
    DWORD result = WAIT_OBJECT_0;
    switch (m_wait % 8) {
        case 1:
            result = WAIT_TIMEOUT;
            break;
        case 2:
            deliver(m_wait / 8);
            result = WAIT_TIMEOUT;
            break;
        case 3:
            result = WAIT_FAILED;
            break;
        case 4:
            break;
        case 5:
            deliver(0);
            deliver(m_wait / 8);
            break;
        default:
            deliver(m_wait / 8);
            break;
    }
    win32::injectResults("WaitForSingleObject", {result});
}

void CHost::waitFrame() {
    CFuzzBuffer message;
    auto status = std::make_unique<std::uint32_t>(1);
    std::uint32_t* place = (m_flags & noOutput) != 0 ? nullptr : status.get();
    m_wait = answers().take();
    const std::size_t which = m_who % m_channels.size();
    const std::uint32_t before = world().liveStarts;
    const std::int32_t result = guarded(
        [&] { return m_channels[which].record.WaitFrame(message.data(), context(), place); });
    win32::clearInjected();
    require(message.isWhole(), "a message is whole");
    require(message.isUntouched() || result != HOST_RESULT_SUCCESS, "a success has no message");
    if (world().liveStarts != before) {
        changeAll(m_channels[which].record.context,
                  [](Channel& channel) { channel.isRestored = true; });
    }
    const bool isTold = *status == HOST_STATUS_DONE || *status == HOST_STATUS_NO_FRAME ||
                        *status == HOST_STATUS_NO_DEVICE;
    require(*status == 1 || isTold, "a status is one of three");
}

// Up to the most that a buffer of the library holds: nothing can ask for more.
std::size_t CHost::frameBytes(std::uint32_t pixelType, bool isColorBounded) const {
    const Channel& channel = m_channels[m_who % m_channels.size()];
    const std::int64_t pixels = static_cast<std::int64_t>(channel.width) * channel.height;
    std::int64_t bytes = pixels;
    if (pixelType == HOST_PIXEL_RAW8 && channel.width % 2 == 1) {
        bytes += channel.height;
    } else if (pixelType == HOST_PIXEL_RGB24) {
        bytes = isColorBounded ? pixels * 3 : std::numeric_limits<std::int64_t>::max();
    }
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(bytes, 0, static_cast<std::int64_t>(mostBytes) + 64));
}

// As the channel has it now; raw frames where it has no such setting.
std::uint32_t CHost::pixelType() {
    CFuzzBuffer value;
    const Channel& channel = *chosen();
    const std::int32_t result = guarded([&] {
        return channel.record.GetPropertyValue(nullptr, channel.record.context, "pixelformat",
                                               value.data());
    });
    if (result != HOST_RESULT_SUCCESS || value.text() == "Raw8") {
        return HOST_PIXEL_RAW8;
    }
    return value.text() == "RGB24" ? HOST_PIXEL_RGB24 : HOST_PIXEL_MONO8;
}

void CHost::copyFrame() {
    const Channel channel = *chosen();
    // A format that changed without a loss is told by the sink alone.
    const bool isBounded = channel.isRestored || !(channel.isResized || world().tellsOtherSizes);
    CBytes frame(frameBytes(pixelType(), isBounded));
    auto status = std::make_unique<std::uint32_t>(1);
    std::uint32_t* place = (m_flags & noOutput) != 0 ? nullptr : status.get();
    void* destination = (m_flags & noText) != 0 ? nullptr : frame.data();
    const std::int32_t result =
        guarded([&] { return channel.record.CopyFrame(nullptr, context(), destination, place); });
    require(result != HOST_RESULT_SUCCESS || place == nullptr || *status == HOST_STATUS_DONE ||
                *status == HOST_STATUS_NO_FRAME,
            "a copy tells whether there was a frame");
}

void CHost::getImageInfo() {
    CFuzzBuffer message;
    auto image = std::make_unique<ImageInfo>();
    image->hostOwn = 0x5A5A5A5A;
    auto status = std::make_unique<std::uint32_t>(1);
    ImageInfo* place = (m_flags & noOutput) != 0 ? nullptr : image.get();
    guarded([&] {
        return chosen()->record.GetImageInfo(message.data(), context(), place, status.get());
    });
    require(message.isWhole(), "a message is whole");
    require(image->hostOwn == 0x5A5A5A5A, "the host's own field is the host's");
}

}  // namespace any_library
