// SPDX-License-Identifier: MIT
// One call into the library, from its start to its return: asks whether it is to
// fail, and records it. Every operation begins by making one and ends by
// returning through it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "capture/library/handles.h"
#include "capture/library/strings.h"
#include "virtual_cameras/calls/call_log.h"
#include "virtual_cameras/calls/faults.h"

namespace virtual_cameras {

std::string textOf(bool value);
std::string textOf(double value);
std::string textOf(std::int64_t value);
std::string textOf(std::int32_t value);
std::string textOf(std::uint32_t value);
std::string textOf(const char* value);
std::string textOf(std::string_view value);
// "0x80004005"
std::string resultCodeText(HRESULT code);

template <class Item>
std::string textOf(const DShowLib::smart_ptr<DShowLib::dvector<Item>>& list) {
    return list ? textOf(list->size()) : "null";
}

// The calling thread is inside a call of the library for the length of a scope.
class CCallDepth {
public:
    CCallDepth() noexcept { ++s_depth; }
    CCallDepth(const CCallDepth&) = delete;
    CCallDepth& operator=(const CCallDepth&) = delete;
    ~CCallDepth() { --s_depth; }

    static bool isInside() noexcept { return s_depth != 0; }

private:
    static thread_local constinit std::uint32_t s_depth;
};

class CLibraryCall {
public:
    // `subject` answers cameraName(), asked only when the log is on or a rig watches calls.
    template <class Subject, class... Arguments>
    CLibraryCall(const char* operation, const Subject& subject, const Arguments&... arguments)
        : m_operation(operation), m_recorded(callLog().isOn()) {
        if (m_recorded) {
            m_camera = subject.cameraName();
            ((m_arguments += (m_arguments.empty() ? "" : ",") + std::string(textOf(arguments))),
             ...);
        }
        m_fault = faults().next(operation, subject);
        if (m_fault) {
            throwIfAsked();
        }
    }
    CLibraryCall(const CLibraryCall&) = delete;
    CLibraryCall& operator=(const CLibraryCall&) = delete;

    bool fails() const noexcept { return m_fault.has_value(); }
    // Only of a call that fails.
    bool failsEmpty() const noexcept { return m_fault->kind == VIRTUAL_CAMERAS_FAIL_EMPTY; }
    const char* failText() const noexcept { return m_fault->text; }
    HRESULT failCode() const noexcept {
        return m_fault->kind == VIRTUAL_CAMERAS_FAIL_CODE ? static_cast<HRESULT>(m_fault->code)
                                                          : E_FAIL;
    }

    const char* operation() const noexcept { return m_operation; }
    bool isRecorded() const noexcept { return m_recorded; }

    void returns() {
        if (m_recorded) {
            callLog().add(m_camera, m_operation, m_arguments, {});
        }
    }
    template <class Value>
    Value returns(Value value) {
        if (m_recorded) {
            callLog().add(m_camera, m_operation, m_arguments, textOf(value));
        }
        return value;
    }
    // For values that have no text of their own.
    template <class Value>
    Value returnsAs(std::string_view text, Value value) {
        if (m_recorded) {
            callLog().add(m_camera, m_operation, m_arguments, text);
        }
        return value;
    }
    HRESULT returnsCode(HRESULT code) {
        if (m_recorded) {
            callLog().add(m_camera, m_operation, m_arguments, resultCodeText(code));
        }
        return code;
    }
    // S_OK, and the value handed out beside it.
    template <class Value>
    HRESULT returnsOk(const Value& value) {
        if (m_recorded) {
            callLog().add(m_camera, m_operation, m_arguments,
                          resultCodeText(S_OK) + " " + std::string(textOf(value)));
        }
        return S_OK;
    }
    // `text` must stay valid for whoever catches it.
    [[noreturn]] void throwText(char* text);

private:
    void throwIfAsked();
    void recordThrown(std::string_view what);

    CCallDepth m_depth;
    const char* m_operation;
    bool m_recorded;
    std::optional<Fault> m_fault;
    std::string m_camera;
    std::string m_arguments;
};

// The subject of calls that belong to no camera.
struct NoCamera {
    std::string cameraName() const { return {}; }
};

}  // namespace virtual_cameras
