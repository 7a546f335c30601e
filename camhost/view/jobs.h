// SPDX-License-Identifier: MIT
// What requests ask of the owner of the cameras: done by its one thread, in the order in
// which they came. Portable.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

#include "camhost/pictures/bayer.h"
#include "camhost/settings/settings_file.h"
#include "camhost/view/http.h"

namespace camhost {

struct SetJob {
    std::string key;
    std::string text;
    bool manual = false;
    std::optional<std::int32_t> camera{};  // as the page saw it; none for the one shown
};
struct ActionJob {
    std::string command;
    bool manual = false;
    std::optional<std::int32_t> camera{};
};
struct CameraJob {
    std::int32_t camera = 0;
};
struct LiveJob {
    bool live = true;
};
struct SaveJob {};
struct LoadJob {
    SettingsFile file;
};
struct DiffJob {
    SettingsFile file;
};
struct RecordJob {
    std::uint64_t frames = 0;           // 0 cancels
    std::optional<BayerOrder> bayer{};  // none: by the format
    bool demosaic = false;
};
struct ZipJob {};
struct EndJob {};

using Job = std::variant<SetJob, ActionJob, CameraJob, LiveJob, SaveJob, LoadJob, DiffJob,
                         RecordJob, ZipJob, EndJob>;

// The place of one answer. Any thread.
class CAnswerSlot {
public:
    void set(HttpResponse response) {
        const std::lock_guard lock(m_mutex);
        m_answer = std::move(response);
    }
    std::optional<HttpResponse> get() const {
        const std::lock_guard lock(m_mutex);
        return m_answer;
    }

private:
    mutable std::mutex m_mutex;
    std::optional<HttpResponse> m_answer;  // under m_mutex
};

// Any thread. Once ended, all jobs are answered as what came too late.
class CJobs {
public:
    struct Waiting {
        Job job;
        std::shared_ptr<CAnswerSlot> slot;
    };

    // Null when too many wait.
    std::shared_ptr<CAnswerSlot> add(Job job);
    std::optional<Waiting> next();
    void end();

private:
    std::mutex m_mutex;
    std::deque<Waiting> m_waiting;  // under m_mutex, as what follows
    bool m_ended = false;
};

HttpResponse endedResponse();

}  // namespace camhost
