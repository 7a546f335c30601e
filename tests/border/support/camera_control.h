// SPDX-License-Identifier: MIT
// The control functions of the virtual cameras, found at run time in the DLL.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/windows.h"
#include "virtual_cameras/control.h"

class CCameraControl {
public:
    // Loads the library, so that a test can prepare it before the adapter does.
    explicit CCameraControl(const std::wstring& file);
    CCameraControl(const CCameraControl&) = delete;
    CCameraControl& operator=(const CCameraControl&) = delete;
    ~CCameraControl();

    bool isLoaded() const noexcept { return m_isComplete; }

    void chooseRig(const char* name) const;
    void loadRig(const char* toml) const;
    // The next call of the operation fails.
    void failNext(const char* operation, std::int32_t kind, std::int32_t code,
                  const char* text) const;

    // The operations recorded since the log was switched on.
    std::vector<std::string> operations() const;
    std::uint32_t countOf(const char* operation) const;
    std::vector<VirtualCamerasCall> calls() const;
    // Of all buffers of a camera's ring.
    std::int32_t lockedBuffers(const char* camera) const;
    std::uint32_t misuses() const;
    std::string lastMisuse() const;
    VirtualCamerasAlive alive() const;
    std::string readProperty(const char* camera, const char* item, const char* element,
                             const char* interfaceName) const;

    decltype(&virtualCamerasReset) reset = nullptr;
    decltype(&virtualCamerasSetClock) setClock = nullptr;
    decltype(&virtualCamerasStepClock) stepClock = nullptr;
    decltype(&virtualCamerasDeliverFrame) deliverFrame = nullptr;
    decltype(&virtualCamerasFireTrigger) fireTrigger = nullptr;
    decltype(&virtualCamerasUnplug) unplug = nullptr;
    decltype(&virtualCamerasPlug) plug = nullptr;
    decltype(&virtualCamerasFailCall) failCall = nullptr;
    decltype(&virtualCamerasClearFailures) clearFailures = nullptr;
    decltype(&virtualCamerasRecordCalls) recordCalls = nullptr;
    decltype(&virtualCamerasWaitForCall) waitForCall = nullptr;

private:
    template <class Function>
    void find(Function& place, const char* name);
    void findAll();

    HMODULE m_module;
    bool m_isComplete = false;
    decltype(&virtualCamerasChooseRig) m_chooseRig = nullptr;
    decltype(&virtualCamerasLoadRig) m_loadRig = nullptr;
    decltype(&virtualCamerasCallCount) m_callCount = nullptr;
    decltype(&virtualCamerasGetCall) m_getCall = nullptr;
    decltype(&virtualCamerasBufferLocks) m_bufferLocks = nullptr;
    decltype(&virtualCamerasMisuses) m_misuses = nullptr;
    decltype(&virtualCamerasGetAlive) m_getAlive = nullptr;
    decltype(&virtualCamerasReadProperty) m_readProperty = nullptr;
};

// Delivers frames of one camera, one after the other, until it is destroyed: for a
// host thread that waits, whenever it begins to.
class CFramePump {
public:
    CFramePump(const CCameraControl& control, const char* camera);
    CFramePump(const CFramePump&) = delete;
    CFramePump& operator=(const CFramePump&) = delete;
    ~CFramePump();

private:
    static DWORD WINAPI run(void* self);

    const CCameraControl& m_control;
    const char* m_camera;
    HANDLE m_stop;
    HANDLE m_thread;
};
