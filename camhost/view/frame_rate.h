// SPDX-License-Identifier: MIT
// Frames per second of the last few seconds. Portable.
#pragma once

#include <deque>
#include <optional>

namespace camhost {

class CFrameRate {
public:
    void add(double now) { m_times.push_back(now); }
    void clear() { m_times.clear(); }
    // None of fewer than two frames, or of a moment that is too short to tell.
    std::optional<double> at(double now) {
        while (!m_times.empty() && now - m_times.front() > window) {
            m_times.pop_front();
        }
        if (m_times.size() < 2 || m_times.back() - m_times.front() < shortest) {
            return std::nullopt;
        }
        return static_cast<double>(m_times.size() - 1) / (m_times.back() - m_times.front());
    }

private:
    static constexpr double window = 3.0;  // seconds
    static constexpr double shortest = 0.25;
    std::deque<double> m_times;
};

}  // namespace camhost
