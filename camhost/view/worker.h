// SPDX-License-Identifier: MIT
// One thread for what takes long and calls no camera: pictures of snapshots. Portable.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace camhost {

// Any thread. What still waits at the end is left out.
class CWorker {
public:
    using Task = std::function<void()>;

    CWorker() : m_thread([this] { work(); }) {}
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;
    ~CWorker();

    // False when too many wait. A task throws nothing.
    bool add(Task task);
    void waitUntilIdle();

private:
    void work();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_tasks;  // under m_mutex, as what follows
    bool m_working = false;
    bool m_closed = false;
    std::thread m_thread;
};

}  // namespace camhost
