// SPDX-License-Identifier: MIT
// Events, and waiting for them.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <new>
#include <unordered_set>

#include "tests/win32/call_log.h"

namespace {

struct Event {
    std::mutex mutex;
    std::condition_variable changed;
    std::uint64_t number = 0;
    bool manualReset = false;
    bool signalled = false;
};

std::atomic<std::uint64_t> numberOfLast{0};

// The system keeps every open event, also one whose handle nobody knows any more.
class COpenEvents {
public:
    void add(const Event* event) {
        const std::lock_guard guard(m_mutex);
        m_events.insert(event);
    }
    void remove(const Event* event) {
        const std::lock_guard guard(m_mutex);
        m_events.erase(event);
    }

private:
    std::mutex m_mutex;
    std::unordered_set<const Event*> m_events;
};

COpenEvents& openEvents() {
    static COpenEvents& events = *new COpenEvents;
    return events;
}

Event* eventOf(HANDLE handle) {
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return static_cast<Event*>(handle);
}

// Into the caller's buffer: the road of a frame passes here and allocates nothing.
struct EventText {
    explicit EventText(HANDLE handle) {
        const Event* event = eventOf(handle);
        if (event == nullptr) {
            size = std::snprintf(text, sizeof(text), handle == nullptr ? "null" : "invalid");
        } else {
            size = std::snprintf(text, sizeof(text), "event %llu",
                                 static_cast<unsigned long long>(event->number));
        }
    }
    EventText(HANDLE handle, DWORD milliseconds) : EventText(handle) {
        const auto used = static_cast<std::size_t>(size);
        size += std::snprintf(text + used, sizeof(text) - used, ", %lu",
                              static_cast<unsigned long>(milliseconds));
    }
    std::string_view view() const { return {text, static_cast<std::size_t>(size)}; }

    char text[64];
    int size = 0;
};

HANDLE createEvent(const char* function, BOOL manualReset, BOOL signalled) {
    const auto result = win32::detail::injected(function);
    Event* event = result == 0 ? nullptr : new (std::nothrow) Event;
    if (event == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    event->number = numberOfLast.fetch_add(1, std::memory_order_relaxed) + 1;
    event->manualReset = manualReset != FALSE;
    event->signalled = signalled != FALSE;
    openEvents().add(event);
    win32::detail::events.add();
    return event;
}

std::string createArguments(BOOL manualReset, BOOL signalled, const std::string& name) {
    return std::to_string(manualReset) + ", " + std::to_string(signalled) + ", " + name;
}

BOOL signal(const char* function, HANDLE handle, bool signalled) {
    win32::detail::record(function, EventText(handle).view());
    if (const auto result = win32::detail::injected(function)) {
        return static_cast<BOOL>(*result);
    }
    Event* event = eventOf(handle);
    if (event == nullptr) {
        return FALSE;
    }
    const std::lock_guard guard(event->mutex);
    event->signalled = signalled;
    event->changed.notify_all();
    return TRUE;
}

}  // namespace

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES, BOOL manualReset, BOOL signalled, LPCSTR name) {
    const win32::detail::CInside inside;
    win32::detail::record("CreateEventA",
                          createArguments(manualReset, signalled, name == nullptr ? "null" : name));
    return createEvent("CreateEventA", manualReset, signalled);
}

HANDLE CreateEventW(LPSECURITY_ATTRIBUTES, BOOL manualReset, BOOL signalled, LPCWSTR name) {
    const win32::detail::CInside inside;
    win32::detail::record("CreateEventW",
                          createArguments(manualReset, signalled, win32::detail::utf8(name)));
    return createEvent("CreateEventW", manualReset, signalled);
}

BOOL SetEvent(HANDLE event) {
    return signal("SetEvent", event, true);
}

BOOL ResetEvent(HANDLE event) {
    return signal("ResetEvent", event, false);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    win32::detail::record("WaitForSingleObject", EventText(handle, milliseconds).view());
    if (const auto result = win32::detail::injected("WaitForSingleObject")) {
        return static_cast<DWORD>(*result);
    }
    Event* event = eventOf(handle);
    if (event == nullptr) {
        return WAIT_FAILED;
    }
    std::unique_lock lock(event->mutex);
    const auto isSignalled = [event] { return event->signalled; };
    if (milliseconds == INFINITE) {
        event->changed.wait(lock, isSignalled);
    } else if (!event->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                        isSignalled)) {
        return WAIT_TIMEOUT;
    }
    event->signalled = event->manualReset;
    return WAIT_OBJECT_0;
}

BOOL CloseHandle(HANDLE handle) {
    win32::detail::record("CloseHandle", EventText(handle).view());
    if (const auto result = win32::detail::injected("CloseHandle")) {
        return static_cast<BOOL>(*result);
    }
    Event* event = eventOf(handle);
    if (event == nullptr) {
        return FALSE;
    }
    openEvents().remove(event);
    delete event;
    win32::detail::events.remove();
    return TRUE;
}
