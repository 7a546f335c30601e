// SPDX-License-Identifier: MIT
#include "tests/border/support/debugger_output.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "tests/border/support/utf8.h"

namespace {

constexpr DWORD narrowTextCode = 0x40010006;
constexpr DWORD wideTextCode = 0x4001000A;

CDebuggerOutput* catching = nullptr;

// The characters that an exception's first two values describe, without the
// terminator that the count includes.
template <class Character>
std::basic_string_view<Character> textOf(const ULONG_PTR* values) {
    const auto* text = reinterpret_cast<const Character*>(values[1]);
    return {text, values[0] == 0 ? 0 : static_cast<std::size_t>(values[0]) - 1};
}

}  // namespace

CDebuggerOutput::CDebuggerOutput() {
    catching = this;
    m_handler = ::AddVectoredExceptionHandler(1, &CDebuggerOutput::onException);
}

CDebuggerOutput::~CDebuggerOutput() {
    ::RemoveVectoredExceptionHandler(m_handler);
    catching = nullptr;
}

LONG CALLBACK CDebuggerOutput::onException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == narrowTextCode) {
        catching->add(std::string(textOf<char>(record.ExceptionInformation)));
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    if (record.ExceptionCode == wideTextCode) {
        catching->add(utf8(textOf<wchar_t>(record.ExceptionInformation)));
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

void CDebuggerOutput::add(std::string text) {
    const std::lock_guard guard(m_mutex);
    m_texts.push_back({std::move(text), ::GetCurrentThreadId()});
}

std::vector<DebuggerText> CDebuggerOutput::takeAll() {
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_texts, {});
}

std::vector<std::string> CDebuggerOutput::take() {
    std::vector<std::string> texts;
    for (DebuggerText& entry : takeAll()) {
        texts.push_back(std::move(entry.text));
    }
    return texts;
}
