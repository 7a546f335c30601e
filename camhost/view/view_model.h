// SPDX-License-Identifier: MIT
// What all tabs see alike: state, settings and events, each with the number by which a tab
// asks for what is newer; and the frames. The owner of the cameras writes it, the thread
// that answers requests reads it. Portable.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "camhost/view/frame_store.h"
#include "camhost/view/view_state.h"

namespace camhost {

struct ViewEvent {
    std::uint64_t number = 0;
    double time = 0.0;  // seconds since the start of the view
    std::string kind{};
    std::string text{};
};

class CViewModel {
public:
    CViewModel(std::vector<CameraFacts> cameras, bool readOnly)
        : m_cameras(std::move(cameras)), m_readOnly(readOnly) {}

    // Called, by any thread and with nothing locked, when there may be something new.
    // Set before there is a second thread.
    void setWake(std::function<void()> wake) { m_wake = std::move(wake); }
    void wake() const;

    const std::vector<CameraFacts>& cameras() const { return m_cameras; }
    bool isReadOnly() const { return m_readOnly; }
    CFrameStore& frames() { return m_frames; }

    // The owner's.
    void setState(const ViewState& state, double now);
    void setSettings(std::int32_t camera, std::string list);  // a JSON array
    void addEvent(double time, std::string kind, std::string text);
    SharedFrame addFrame(std::unique_ptr<ViewFrame> frame);
    void end();  // nobody waits any longer

    // Any thread. Texts are JSON; nothing when there is nothing new behind that number.
    std::optional<std::string> stateText(std::optional<std::uint64_t> after) const;
    std::optional<std::string> settingsText(std::optional<std::uint64_t> after) const;
    std::optional<std::string> eventsText(std::uint64_t after, bool evenIfNone) const;
    bool isLost(std::int32_t camera) const;
    bool hasEnded() const;

private:
    const std::vector<CameraFacts> m_cameras;
    const bool m_readOnly;
    std::function<void()> m_wake;
    CFrameStore m_frames;

    mutable std::mutex m_mutex;
    ViewState m_state;  // under m_mutex, as what follows
    std::uint64_t m_stateVersion = 0;
    ViewCounters m_toldCounters;  // of the last version that was for them
    double m_countersAt = 0.0;
    std::uint64_t m_settingsVersion = 0;
    std::int32_t m_settingsCamera = 0;
    std::string m_settings = "[]";
    std::deque<ViewEvent> m_events;
    std::uint64_t m_lastEvent = 0;
    bool m_ended = false;
};

}  // namespace camhost
