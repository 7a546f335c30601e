// SPDX-License-Identifier: MIT
// What camhost needs of the machine, so that everything above it runs in tests
// on any system: loading an adapter, time, Ctrl-C, the terminal, dialogs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camhost/base/library_search.h"
#include "velmora/video_channel_record.h"

namespace camhost {

struct Dialog {
    std::string caption;
    std::string text;
};

// What a process holds of the system.
struct ProcessResources {
    std::uint32_t handles = 0;
    std::uint32_t threads = 0;
};

class CSystem {
public:
    CSystem() = default;
    CSystem(const CSystem&) = delete;
    CSystem& operator=(const CSystem&) = delete;
    virtual ~CSystem() = default;

    // Seen by every library that is loaded later.
    virtual void setVariable(const std::string& name, const std::string& value) = 0;

    // Empty for the adapter beside the program. Throws a Failure.
    virtual GetVideoChannelEntry loadAdapter(const std::string& file) = 0;
    virtual std::string adapterFile() const = 0;
    // Whether the file that the adapter needs at its first call lies beside it.
    virtual bool captureLibraryPresent() const = 0;
    virtual CLibrarySearch& librarySearch() = 0;
    // What virtual cameras found wrong with their rig; empty for nothing, and for cameras
    // that are not virtual.
    virtual std::string rigMistake() const = 0;

    // From now on, windows that ask the user something are read and closed.
    virtual void guardDialogs(bool on) = 0;
    virtual std::vector<Dialog> dialogsClosed() = 0;

    // Of this process, as they are now; nothing where the system does not tell.
    virtual std::optional<ProcessResources> resources() = 0;
    // That this process has spent on all processors; nothing where the system does not tell.
    virtual std::optional<double> processorSeconds() = 0;

    virtual double seconds() = 0;  // counts up from anywhere
    // Returns early when interrupted.
    virtual void sleep(std::uint32_t milliseconds) = 0;
    virtual bool interrupted() = 0;
    virtual bool messagesOnTerminal() = 0;
    virtual std::string utcDate() = 0;  // "2024-05-06T07:08:09Z"

    // Of the system's own generator, as secrets need them. Throws a Failure.
    virtual std::vector<std::uint8_t> randomBytes(std::size_t count) = 0;
    // Shows a page in the user's browser. False when there is none to be had.
    virtual bool openBrowser(const std::string& address) = 0;
};

}  // namespace camhost
