// SPDX-License-Identifier: MIT
// The process-wide list of cameras.
#pragma once

#include <cstdint>
#include <vector>

#include "adapter/video_channel.h"

// Channels in the order in which the capture library listed their devices: the
// position is the camera index of the host. Host thread; no lock.
//
// Channels that are still listed when the adapter is unloaded are neither
// destroyed nor closed.
class ChannelRegistry {
public:
    // Whether the devices have been listed. Never cleared: a process that has
    // closed all its channels gets no channels again.
    bool isInitialised() const noexcept { return m_initialised; }

    // Starts the capture library, and opens a channel for every device. A device
    // whose channel throws a text is reported in a message box and left out. Any
    // other exception undoes the channels made so far and passes on; the library
    // stays started for the next attempt.
    void enumerate();

    std::int32_t size() const noexcept { return static_cast<std::int32_t>(m_channels.size()); }
    // Throws std::out_of_range for a position without a channel.
    CVideoChannel& at(std::int32_t index) const;
    // The channel that a host's context stands for; null for any other value.
    CVideoChannel* find(const void* context) const noexcept;

    // Destroys and unlists the channel of the context, if there is one, and shuts
    // the capture library down when none is left.
    void close(const void* context);

private:
    std::vector<CVideoChannel*> m_channels;
    bool m_libraryStarted = false;
    bool m_initialised = false;
};

// The one registry of the process; made when the adapter is loaded.
ChannelRegistry& channelRegistry() noexcept;
