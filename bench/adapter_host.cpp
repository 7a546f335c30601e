// SPDX-License-Identifier: MIT
#include "bench/adapter_host.h"

#include <stdexcept>

namespace bench {

namespace {

std::string hexadecimal(std::int32_t number) {
    std::string text;
    for (int shift = 16; shift > 0; shift -= 4) {
        text += "0123456789ABCDEF"[(number >> (shift - 4)) & 0xF];
    }
    return text;
}

std::string itemText(std::int32_t index) {
    const std::string number = std::to_string(index);
    return "[[camera.item]]\nname = \"Setting " + number +
           "\"\n"
           "Value.range = { min = 1, max = 10000, value = 333 }\n"
           "Value.abs = { min = 0.0001, max = 1.0, value = 0.25 }\n"
           "Enable.switch = false\n";
}

}  // namespace

void CCamera::require(std::int32_t result, const char* what) const {
    if (result != HOST_RESULT_SUCCESS) {
        throw std::runtime_error(std::string(what) + " was refused: " + m_text);
    }
}

std::string CCamera::get(const char* key) {
    require(m_record.GetPropertyValue(m_text, m_record.context, key, m_value), key);
    return m_value;
}

void CCamera::set(const char* key, const char* value) {
    require(m_record.SetPropertyValue(m_text, m_record.context, key, value), key);
}

bool CCamera::hasName(std::int32_t index) {
    return m_record.GetPropertyName(m_text, m_record.context, index, m_value) ==
           HOST_RESULT_SUCCESS;
}

std::int32_t CCamera::countNames() {
    std::int32_t count = 0;
    while (hasName(count)) {
        ++count;
    }
    return count;
}

void CCamera::start() {
    require(m_record.StartAcquisition(m_text, m_record.context), "StartAcquisition");
}

void CCamera::stop() {
    require(m_record.StopAcquisition(m_text, m_record.context), "StopAcquisition");
}

void CCamera::wait() {
    std::uint32_t status = HOST_STATUS_NO_FRAME;
    while (status != HOST_STATUS_DONE) {
        require(m_record.WaitFrame(m_text, m_record.context, &status), "WaitFrame");
    }
}

void CCamera::copy(void* destination) {
    std::uint32_t status = HOST_STATUS_NO_FRAME;
    require(m_record.CopyFrame(m_text, m_record.context, destination, &status), "CopyFrame");
    if (status != HOST_STATUS_DONE) {
        throw std::runtime_error("CopyFrame found no frame");
    }
}

void CCamera::close() {
    require(m_record.CloseChannel(m_text, m_record.context), "CloseChannel");
}

std::vector<CCamera> openCameras(GetVideoChannelEntry entry) {
    std::vector<CCamera> cameras;
    VideoChannelRecord record{};
    while (entry(nullptr, static_cast<std::int32_t>(cameras.size()), &record) ==
           HOST_RESULT_SUCCESS) {
        cameras.emplace_back(record);
        record = {};
    }
    if (cameras.empty()) {
        throw std::runtime_error("the adapter finds no camera");
    }
    return cameras;
}

std::string Rig::text(std::int32_t firstSerial) const {
    std::string text = "rig = 1\n";
    for (std::int32_t camera = 0; camera < cameras; ++camera) {
        const std::string serial = hexadecimal(firstSerial + camera);
        text += "[[camera]]\nname = \"Bench " + serial + "\"\nserial = \"" + serial +
                "\"\nformats = [\"" + format + "\"]\nframerates = [" + std::to_string(rate) +
                ".0]\nscene = \"flat\"\n";
        for (std::int32_t item = 0; item < items; ++item) {
            text += itemText(item);
        }
    }
    return text;
}

}  // namespace bench
