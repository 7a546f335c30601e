// SPDX-License-Identifier: MIT
#include "tests/soak/camera_host.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include "platform/windows.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

namespace soak {

namespace {

using Text = std::array<char, HOST_TEXT_BYTES>;

std::size_t frameBytes(const ImageInfo& image) {
    const auto pixels =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    if (image.pixelType == HOST_PIXEL_RGB24) {
        return pixels * 3;
    }
    const bool isOdd = image.pixelType == HOST_PIXEL_RAW8 && image.width % 2 != 0;
    return pixels + (isOdd ? static_cast<std::size_t>(image.height) : 0);
}

}  // namespace

void require(bool holds, const char* claim, const std::string& detail) {
    if (!holds) {
        std::ignore = std::fprintf(stderr, "does not hold: %s (%s)\n", claim, detail.c_str());
        std::_Exit(1);
    }
}

CCameraHost::CCameraHost(std::int32_t index) {
    require(GetVideoChannel(nullptr, index, &m_record) == 0, "the camera can be opened");
    const bool hasSerial = std::strcmp(static_cast<const char*>(m_record.serialText), "n/a") != 0;
    m_camera = static_cast<const char*>(hasSerial ? m_record.serialText : m_record.deviceName);
    Text name{};
    for (std::int32_t i = 0;
         m_record.GetPropertyName(nullptr, m_record.context, i, name.data()) == 0; ++i) {
        m_keys.emplace_back(name.data());
    }
    m_videoFormat = get("videoformat");
    m_pixelFormat = get("pixelformat");
}

std::string CCameraHost::get(const char* key) const {
    Text message{};
    Text value{};
    require(m_record.GetPropertyValue(message.data(), m_record.context, key, value.data()) == 0,
            "a listed setting can be read", message.data());
    return value.data();
}

bool CCameraHost::set(const char* key, const char* value) const {
    Text message{};
    return m_record.SetPropertyValue(message.data(), m_record.context, key, value) == 0;
}

void CCameraHost::takeSize() {
    ImageInfo image{};
    std::uint32_t status = 1;
    require(m_record.GetImageInfo(nullptr, m_record.context, &image, &status) == 0 &&
                status == HOST_STATUS_DONE,
            "a started camera tells its size");
    m_frame.resize(frameBytes(image));
}

void CCameraHost::start() {
    Text message{};
    require(m_record.StartAcquisition(message.data(), m_record.context) == 0,
            "a stopped camera starts", message.data());
    takeSize();
}

void CCameraHost::stop() const {
    Text message{};
    require(m_record.StopAcquisition(message.data(), m_record.context) == 0, "a live camera stops",
            message.data());
}

void CCameraHost::wait() {
    win32::runInside("WaitForSingleObject", [this] {
        require(virtualCamerasDeliverFrame(m_camera.c_str()) == 1 ||
                    virtualCamerasFireTrigger(m_camera.c_str()) == 1,
                "a live camera delivers", m_camera);
    });
    Text message{};
    std::uint32_t status = 1;
    require(m_record.WaitFrame(message.data(), m_record.context, &status) == 0 &&
                status == HOST_STATUS_DONE,
            "a wait ends with the delivered frame", message.data());
}

void CCameraHost::takeFrame(Counts& counts) {
    wait();
    std::uint32_t status = 1;
    require(m_record.CopyFrame(nullptr, m_record.context, m_frame.data(), &status) == 0 &&
                status == HOST_STATUS_DONE,
            "a frame that was waited for is copied");
    ++counts.frames;
}

void CCameraHost::loseAndRestore(Counts& counts, std::uint32_t times) {
    for (std::uint32_t i = 0; i < times; ++i) {
        virtualCamerasUnplug(m_camera.c_str());
        if (i + 1 < times) {
            virtualCamerasPlug(m_camera.c_str());
        }
    }
    Text message{};
    std::uint32_t status = 1;
    require(m_record.WaitFrame(message.data(), m_record.context, &status) == 1 &&
                status == HOST_STATUS_NO_DEVICE,
            "a lost camera is told", message.data());
    virtualCamerasPlug(m_camera.c_str());
    wait();
    ++counts.losses;
}

std::string CCameraHost::anyValueOf(const std::string& key, std::mt19937_64& random) const {
    static constexpr std::array<const char*, 12> values = {
        "true", "false", "0", "1", "50", "0.04", "-7", "99999", "mono8", "raw8", "rgb24", "other"};
    Text choice{};
    const auto index = static_cast<std::int32_t>(random() % 3);
    if (random() % 2 == 0 && m_record.GetPropertyChoice(nullptr, m_record.context, key.c_str(),
                                                        index, choice.data()) == 0) {
        return choice.data();
    }
    return values[random() % values.size()];
}

void CCameraHost::setAnything(Counts& counts, std::mt19937_64& random) {
    const std::string& key = m_keys[random() % m_keys.size()];
    const std::string value = anyValueOf(key, random);
    ++counts.settings;
    counts.refusals += set(key.c_str(), value.c_str()) ? 0U : 1U;
    get(key.c_str());
}

void CCameraHost::setBack() {
    set("videoformat", m_videoFormat.c_str());
    set("pixelformat", m_pixelFormat.c_str());
}

}  // namespace soak
