// SPDX-License-Identifier: MIT
// The process-wide list of cameras.
#pragma once

#include <cstdint>
#include <vector>

#include "adapter/video_channel.h"

// Channels in the order in which the capture library listed their devices: the
// position is the camera index of the host. Host thread; no lock.
//
// The host may call again from inside a call, since message boxes and the property page
// pump its messages: a channel lives until the outermost of its calls has left.
//
// Channels that are still listed when the adapter is unloaded are neither
// destroyed nor closed.
class ChannelRegistry {
public:
    // Whether the devices have been listed. Never cleared: a process that has
    // closed all its channels gets no channels again.
    bool isInitialised() const noexcept { return m_initialised; }
    // Whether the devices are being listed by a call further out.
    bool isEnumerating() const noexcept { return m_enumerating; }

    // Starts the capture library, and opens a channel for every device. A device
    // whose channel throws a text is reported in a message box and left out. Any
    // other exception undoes the channels made so far and passes on; the library
    // stays started for the next attempt. False, with nothing done, where the library
    // lacks a function that the adapter needs.
    bool enumerate();

    std::int32_t size() const noexcept { return static_cast<std::int32_t>(m_listed.size()); }
    // Throws std::out_of_range for a position without a channel.
    CVideoChannel& at(std::int32_t index) const;

    // Begins a call of the host into the channel that its context stands for; null, with
    // nothing begun, for any other value. Each call that began ends with leave.
    CVideoChannel* enter(const void* context) noexcept;
    void leave(const CVideoChannel& channel) noexcept;

    // Unlists the channel of the context, if there is one, and destroys it: at once, or
    // when its outermost call leaves. Shuts the capture library down when none is left.
    void close(const void* context);

private:
    struct Entry {
        CVideoChannel* channel;
        std::uint32_t calls;  // of the host, one inside the other
    };

    static std::vector<Entry>::iterator entryOf(std::vector<Entry>& entries,
                                                const void* context) noexcept;
    void openAll();
    void destroy(CVideoChannel* channel) noexcept;
    void shutDownIfIdle();

    std::vector<Entry> m_listed;
    // Closed inside their own calls. Has room for all, so that closing cannot fail.
    std::vector<Entry> m_closed;
    std::uint32_t m_destroying = 0;
    bool m_enumerating = false;
    bool m_initialised = false;
    bool m_libraryStarted = false;
    // Without a start the library's file may not even be there.
    bool m_libraryEverStarted = false;
};

// The one registry of the process; made when the adapter is loaded.
ChannelRegistry& channelRegistry() noexcept;
