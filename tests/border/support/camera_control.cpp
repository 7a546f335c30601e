// SPDX-License-Identifier: MIT
#include "tests/border/support/camera_control.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdio>

CCameraControl::CCameraControl(const std::wstring& file) : m_module(::LoadLibraryW(file.c_str())) {
    if (m_module != nullptr) {
        m_isComplete = true;
        findAll();
    }
}

CCameraControl::~CCameraControl() {
    if (m_module != nullptr) {
        ::FreeLibrary(m_module);
    }
}

template <class Function>
void CCameraControl::find(Function& place, const char* name) {
    place = std::bit_cast<Function>(::GetProcAddress(m_module, name));
    if (place == nullptr) {
        std::fprintf(stderr, "the capture library lacks %s\n", name);
        m_isComplete = false;
    }
}

void CCameraControl::findAll() {
    find(reset, "virtualCamerasReset");
    find(setClock, "virtualCamerasSetClock");
    find(stepClock, "virtualCamerasStepClock");
    find(deliverFrame, "virtualCamerasDeliverFrame");
    find(fireTrigger, "virtualCamerasFireTrigger");
    find(unplug, "virtualCamerasUnplug");
    find(plug, "virtualCamerasPlug");
    find(failCall, "virtualCamerasFailCall");
    find(clearFailures, "virtualCamerasClearFailures");
    find(recordCalls, "virtualCamerasRecordCalls");
    find(waitForCall, "virtualCamerasWaitForCall");
    find(m_bufferLocks, "virtualCamerasBufferLocks");
    find(m_chooseRig, "virtualCamerasChooseRig");
    find(m_loadRig, "virtualCamerasLoadRig");
    find(m_callCount, "virtualCamerasCallCount");
    find(m_getCall, "virtualCamerasGetCall");
    find(m_misuses, "virtualCamerasMisuses");
    find(m_getAlive, "virtualCamerasGetAlive");
    find(m_readProperty, "virtualCamerasReadProperty");
}

void CCameraControl::chooseRig(const char* name) const {
    char message[256] = "";
    ASSERT_EQ(m_chooseRig(name, message, sizeof(message)), 0) << message;
}

void CCameraControl::loadRig(const char* toml) const {
    char message[256] = "";
    ASSERT_EQ(m_loadRig(toml, message, sizeof(message)), 0) << message;
}

void CCameraControl::failNext(const char* operation, std::int32_t kind, std::int32_t code,
                              const char* text) const {
    failCall(operation, 1, 1, kind, code, text);
}

std::vector<VirtualCamerasCall> CCameraControl::calls() const {
    std::vector<VirtualCamerasCall> calls;
    VirtualCamerasCall call{};
    for (std::uint64_t i = 0; m_getCall(i, &call) == 1; ++i) {
        calls.push_back(call);
    }
    return calls;
}

std::vector<std::string> CCameraControl::operations() const {
    std::vector<std::string> names;
    for (const VirtualCamerasCall& call : calls()) {
        names.emplace_back(call.operation);
    }
    return names;
}

std::uint32_t CCameraControl::countOf(const char* operation) const {
    std::uint32_t count = 0;
    for (const std::string& name : operations()) {
        count += name == operation ? 1U : 0U;
    }
    return count;
}

std::int32_t CCameraControl::lockedBuffers(const char* camera) const {
    std::int32_t locked = 0;
    for (std::uint32_t buffer = 0; buffer < 5; ++buffer) {
        locked += m_bufferLocks(camera, buffer);
    }
    return locked;
}

std::uint32_t CCameraControl::misuses() const {
    return m_misuses(nullptr, 0);
}

std::string CCameraControl::lastMisuse() const {
    char text[256] = "";
    m_misuses(text, sizeof(text));
    return text;
}

VirtualCamerasAlive CCameraControl::alive() const {
    VirtualCamerasAlive alive{};
    m_getAlive(&alive);
    return alive;
}

std::string CCameraControl::readProperty(const char* camera, const char* item, const char* element,
                                         const char* interfaceName) const {
    char text[256] = "";
    EXPECT_EQ(m_readProperty(camera, item, element, interfaceName, text, sizeof(text)), 1);
    return text;
}

CFramePump::CFramePump(const CCameraControl& control, const char* camera)
    : m_control(control),
      m_camera(camera),
      m_stop(::CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_thread(::CreateThread(nullptr, 0, &CFramePump::run, this, 0, nullptr)) {}

CFramePump::~CFramePump() {
    ::SetEvent(m_stop);
    ::WaitForSingleObject(m_thread, INFINITE);
    ::CloseHandle(m_thread);
    ::CloseHandle(m_stop);
}

DWORD WINAPI CFramePump::run(void* self) {
    auto* pump = static_cast<CFramePump*>(self);
    while (::WaitForSingleObject(pump->m_stop, 0) == WAIT_TIMEOUT) {
        pump->m_control.deliverFrame(pump->m_camera);
    }
    return 0;
}
