// SPDX-License-Identifier: MIT
// What the functions of the subset share: writing the log, and asking for an
// injected answer.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace win32::detail {

// The calling thread is inside the subset for the length of a scope. Stands in each
// function that may allocate with new.
class CInside {
public:
    CInside() noexcept { ++s_depth; }
    CInside(const CInside&) = delete;
    CInside& operator=(const CInside&) = delete;
    ~CInside() { --s_depth; }

    static bool isInside() noexcept { return s_depth != 0; }

private:
    static inline thread_local constinit std::uint32_t s_depth = 0;
};

// Appends one call; `name` must be a literal. Allocates only for arguments
// longer than 200 bytes.
void record(const char* name, std::string_view arguments);

// The answer that a test has laid down for this call, used up by asking.
std::optional<std::int64_t> injected(std::string_view name);

// Arguments as text.
std::string pointerText(const void* pointer);
std::string utf8(const wchar_t* text);
// The bytes that the text takes; as many of them as fit are written.
std::size_t utf8(const wchar_t* text, std::span<char> buffer);

// One more or one fewer of something that tests count.
class Counter {
public:
    void add() { m_count.fetch_add(1, std::memory_order_relaxed); }
    void remove() { m_count.fetch_sub(1, std::memory_order_relaxed); }
    std::int64_t value() const { return m_count.load(std::memory_order_relaxed); }

private:
    std::atomic<std::int64_t> m_count{0};
};

extern Counter taskMemory;
extern Counter bstrTexts;
extern Counter events;
extern Counter searches;

// Undo what tests have set, file by file.
void resetInjected();
void resetModules();
void resetMessageBoxes();

}  // namespace win32::detail
