// SPDX-License-Identifier: MIT
#include "camhost/view/worker.h"

#include <utility>

namespace camhost {

namespace {

constexpr std::size_t mostTasks = 64;

}  // namespace

CWorker::~CWorker() {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.clear();
        m_closed = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool CWorker::add(Task task) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_tasks.size() >= mostTasks) {
            return false;
        }
        m_tasks.push_back(std::move(task));
    }
    m_changed.notify_all();
    return true;
}

void CWorker::waitUntilIdle() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_tasks.empty() && !m_working; });
}

void CWorker::work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_closed || !m_tasks.empty(); });
        if (m_closed) {
            return;
        }
        Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        m_working = true;
        lock.unlock();
        task();
        task = nullptr;  // what it held is let go outside the lock
        lock.lock();
        m_working = false;
        m_changed.notify_all();
    }
}

}  // namespace camhost
