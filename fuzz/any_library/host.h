// SPDX-License-Identifier: MIT
// A host that calls whatever the input says, in any order, also from inside its own calls.
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "fuzz/input/fuzz_input.h"
#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

namespace any_library {

// In the place of a result.
inline constexpr std::int32_t hasThrown = -1;

// What a call may leave null.
inline constexpr std::uint8_t noMessage = 1;
inline constexpr std::uint8_t noOutput = 2;
inline constexpr std::uint8_t noText = 4;
inline constexpr std::uint8_t keyInMessage = 8;  // one buffer for both

// Buffers are exactly as large as the host's border says.
class CHost {
public:
    CHost();
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;
    ~CHost();

    // Calls until the input is used up, and closes what is left.
    void run();

private:
    // A channel as the host knows it; closed ones stay in the list.
    struct Channel {
        VideoChannelRecord record;
        std::int32_t width;  // at the last start
        std::int32_t height;
        bool isRestored;  // since then
        bool isResized;   // the camera has another size than then
    };

    void step();
    void callChannel(std::uint8_t operation);
    void callWithText(std::uint8_t operation);
    void callInside();
    void answerWait() const;

    void getChannel();
    void startAcquisition();
    void waitFrame();
    void copyFrame();
    void getImageInfo();
    void nameProperty();
    void setParameters();
    void closeAll();

    Channel* chosen();
    void* context();
    std::size_t frameBytes(std::uint32_t pixelType, bool isColorBounded) const;
    std::uint32_t pixelType();
    const char* takeKey(char* place);

    template <class Call>
    std::int32_t guarded(const Call& call);
    // A camera that was asked for twice is one channel, and two in the list.
    template <class Change>
    void changeAll(const void* channelContext, const Change& change);

    std::vector<Channel> m_channels;
    std::uint8_t m_who = 0;     // of the call that begins
    std::uint8_t m_flags = 0;   // what is null
    std::uint8_t m_inside = 0;  // calls inside a box or page of this call
    std::uint8_t m_wait = 0;    // how a wait ends
    std::uint32_t m_depth = 0;
    std::uint32_t m_stepsLeft = 64;
    std::array<char, 256> m_key{};  // the last that was listed
};

// Runs one call of the host; whatever the library may throw may come out of it.
template <class Call>
std::int32_t CHost::guarded(const Call& call) {
    try {
        const std::int32_t result = call();
        require(result == HOST_RESULT_SUCCESS || result == HOST_RESULT_FAILURE,
                "a result is success or failure");
        return result;
    } catch (std::int32_t code) {
        require(code < 0, "a thrown code is a failure");
    } catch (const char*) {
    } catch (const std::out_of_range& failure) {
        require(std::string_view(failure.what()) == "invalid vector<T> subscript",
                "an index outside a list has its text");
    } catch (const std::exception&) {
    }
    return hasThrown;
}

template <class Change>
void CHost::changeAll(const void* channelContext, const Change& change) {
    for (Channel& channel : m_channels) {
        if (channel.record.context == channelContext) {
            change(channel);
        }
    }
}

}  // namespace any_library
