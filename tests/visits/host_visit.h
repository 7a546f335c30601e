// SPDX-License-Identifier: MIT
// A host's whole visit to a camera: everything that the record offers, from the export to
// the last close, whatever goes wrong on the way.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/host_memory.h"
#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

namespace visits {

// True on the host's thread for the length of a call into the adapter, but for the work
// that the visit itself does inside it.
bool isInsideHostCall() noexcept;

// A host that cannot be put off: whatever a call answers or throws, the next one comes.
// It copies into exactly the memory that the last successful start asks for, and writes
// down all that it gets. Answers that no call may give are failures of the test.
class CHostVisit {
public:
    // `camera` is the one to be visited, as the virtual cameras know it.
    explicit CHostVisit(std::string camera);
    CHostVisit(const CHostVisit&) = delete;
    CHostVisit& operator=(const CHostVisit&) = delete;
    ~CHostVisit();

    void run();

    // How often it asked for the cameras from the first one on.
    std::int32_t listings() const noexcept { return m_listings; }
    // How many channels it was given.
    std::int32_t channels() const noexcept { return static_cast<std::int32_t>(m_records.size()); }
    // Every answer, text, status and picture, in order.
    const std::string& transcript() const noexcept { return m_transcript; }
    // Frames of another camera came to the visited one's channel.
    bool gotForeignFrames() const noexcept { return m_foreignFrames != 0; }
    std::uint32_t copiedFrames() const noexcept { return m_copiedFrames; }
    // The most buffers that any stop left locked.
    std::int32_t locksAfterStop() const noexcept { return m_locksAfterStop; }
    // Texts of all that left a call as an exception.
    const std::set<std::string>& thrown() const noexcept { return m_thrown; }

private:
    // One call: what it answers, and what it leaves in the host's memory.
    template <class Operation>
    std::int32_t call(std::string_view name, const Operation& operation);
    void checkAnswer(std::string_view name, std::int32_t result);
    void note(std::string_view text);
    std::string message() const;
    std::string value() const;
    std::uint32_t statusWord() const;
    std::uint32_t* status();

    void open();
    bool openAll();
    void close();

    std::vector<std::string> numberedList(std::string_view prefix);
    std::int32_t get(const std::string& key);
    std::int32_t set(const std::string& key, const std::string& value);
    void listNames();
    void describe(const std::string& key);
    void useSettings();
    void useCommands();
    void applyBlock(std::int32_t triggerEnable);

    void takeFrames(const char* pixelType, std::uint32_t format);
    void changeWhileLive();
    void loseAndRestore();
    void chooseFormat(std::uint32_t position);
    void start();
    void stop();
    void imageInfo(bool isKnown);
    void wait(bool delivers);
    void copy();
    void deliver();
    std::size_t frameBytes() const;

    std::string m_camera;
    std::int32_t m_listings = 0;
    std::vector<std::unique_ptr<VideoChannelRecord>> m_records;
    const VideoChannelRecord* m_record = nullptr;
    CHostText m_message;
    CHostText m_value;
    CHostMemory m_status{sizeof(std::uint32_t)};
    std::string m_transcript;

    // As the last successful start and the image description behind it say.
    std::int32_t m_width = 0;
    std::int32_t m_height = 0;
    std::string m_pixelType = "Mono8";
    std::atomic<bool> m_signalled{false};
    bool m_delivers = false;
    std::uint32_t m_foreignFrames = 0;
    std::uint32_t m_copiedFrames = 0;
    std::int32_t m_locksAfterStop = 0;
    std::set<std::string> m_thrown;
};

}  // namespace visits
