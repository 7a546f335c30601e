// SPDX-License-Identifier: MIT
// Visits to one camera, as many as wanted in one process, and what each leaves behind.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/visits/visited_camera.h"

namespace visits {

// Against what there was before the visit.
struct Remains {
    std::uint32_t grabbers = 0;
    std::uint32_t openDevices = 0;
    std::uint32_t liveDevices = 0;
    std::uint32_t listeners = 0;
    std::uint32_t sinks = 0;
    std::uint32_t buffers = 0;
    std::uint32_t items = 0;
    std::int64_t references = 0;  // that no setting holds
    std::int64_t threads = 0;
    std::int64_t comStarts = 0;
    std::int64_t comStopsTooMany = 0;
    std::int64_t taskMemory = 0;
    std::int64_t texts = 0;
    std::int64_t searches = 0;

    bool operator==(const Remains&) const = default;
};
void PrintTo(const Remains& remains, std::ostream* out);

struct Outcome {
    std::string transcript;
    std::int32_t listings = 0;
    std::int32_t channels = 0;
    std::uint32_t copiedFrames = 0;
    bool gotForeignFrames = false;
    std::int32_t locksAfterStop = 0;
    std::set<std::string> thrown;
    Remains remains;
    // Events live as long as the process, one for each channel.
    std::int64_t events = 0;
    // References that settings hold to interfaces of the device, for as long.
    std::map<std::string, std::int32_t> heldInterfaces;
    std::uint32_t misuses = 0;
    std::string misuse;  // the last
};

// One call of the reference visit.
struct RecordedCall {
    std::string operation;
    std::uint32_t nth = 0;  // of its operation
    bool answersCode = false;
};

// The adapter as it is just after its load, a rig, and a host. The export's list of cameras
// is made anew for each visit, as a new process would have it.
class CVisitGround {
public:
    explicit CVisitGround(const VisitedCamera& camera);
    CVisitGround(const CVisitGround&) = delete;
    CVisitGround& operator=(const CVisitGround&) = delete;
    ~CVisitGround();

    // What every clean visit has to be like.
    const Outcome& reference() const noexcept { return m_reference; }
    const std::vector<RecordedCall>& calls() const noexcept { return m_calls; }
    std::uint64_t visits() const noexcept { return m_visits; }

    // A visit, with failures laid down just before it and asked after just behind it; all
    // failures end with it.
    Outcome visit(const std::function<void()>& arrange = {},
                  const std::function<void()>& askAfter = {});

    // The failures of the test that a visit's outcome is.
    void expectNothingLeft(const Outcome& outcome) const;
    void expectAsReference(const Outcome& outcome) const;

    // For people and for scripts/failing_visits.sh, which adds them up.
    void tell(std::string_view what, std::uint64_t count, std::uint64_t failed) const;

private:
    void readInterfaces();
    void readCalls();
    std::map<std::string, std::int32_t> heldInterfaces() const;

    // An interface, as the control of the virtual cameras asks for it.
    struct Interface {
        std::string item;
        std::string element;
        std::string name;
    };

    std::string m_id;
    std::string m_rig;
    std::vector<Interface> m_interfaces;
    std::vector<RecordedCall> m_calls;
    Outcome m_reference;
    std::uint64_t m_visits = 0;
};

}  // namespace visits
