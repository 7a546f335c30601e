// SPDX-License-Identifier: MIT
// Calls that are to fail, as tests asked for them, and who else has a say. Any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cameras/calls/monitor.h"

namespace virtual_cameras {

struct Fault {
    std::int32_t kind;
    std::int32_t code;
    // Valid to the end of the process; never null.
    char* text;
};

// Whom a call is about. Its name takes the world's lock.
struct CallSubject {
    const void* subject;
    std::string (*cameraNameOf)(const void* subject);

    std::string cameraName() const { return cameraNameOf(subject); }
};

// Sees each call before its work is done, and may make it fail. Called without the
// world's lock.
using CallWatch = std::optional<Fault> (*)(std::string_view operation, const CallSubject& subject);

class CFaults {
public:
    void add(std::string_view operation, std::uint32_t nth, std::uint32_t count, Fault fault,
             std::string_view text);
    void clear();

    // Null: nobody. Stays when faults are cleared.
    void setWatch(CallWatch watch) noexcept { m_watch.store(watch, std::memory_order_release); }

    // Counts this call. What is to happen to it, if anything. `subject` answers
    // cameraName().
    template <class Subject>
    std::optional<Fault> next(std::string_view operation, const Subject& subject) {
        std::optional<Fault> fault;
        if (const CallWatch watch = m_watch.load(std::memory_order_acquire)) {
            fault = watch(operation, {&subject, [](const void* about) {
                                          return static_cast<const Subject*>(about)->cameraName();
                                      }});
        }
        if (m_any.load(std::memory_order_relaxed)) {
            if (const auto asked = nextOf(operation)) {
                fault = asked;
            }
        }
        return fault;
    }
    // A copy of a text that is never given back, as thrown texts must be.
    char* keep(std::string_view text);

private:
    struct Rule {
        std::string operation;
        std::uint64_t first;
        std::uint64_t count;  // 0: without end
        std::uint64_t seen;
        Fault fault;
    };

    std::optional<Fault> nextOf(std::string_view operation);

    std::atomic<CallWatch> m_watch{nullptr};
    std::atomic<bool> m_any{false};
    CMonitor m_monitor;
    std::vector<Rule> m_rules GUARDED_BY(m_monitor);
    // Each text and its copy, which does not move in a map.
    std::map<std::string, std::string, std::less<>> m_texts GUARDED_BY(m_monitor);
};

CFaults& faults();

}  // namespace virtual_cameras
