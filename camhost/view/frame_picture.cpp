// SPDX-License-Identifier: MIT
#include "camhost/view/frame_picture.h"

#include <algorithm>

#include "camhost/pictures/frame_texts.h"
#include "velmora/host_blocks.h"

namespace camhost {

namespace {

std::string sixDigits(std::uint64_t number) {
    std::string digits = std::to_string(number);
    return digits.size() < 6 ? digits.insert(0, 6 - digits.size(), '0') : digits;
}

}  // namespace

std::string fileStem(const std::string& serial, std::int32_t camera) {
    constexpr const char* plain = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const bool isPlain = !serial.empty() && serial.find_first_not_of(plain) == serial.npos;
    return isPlain ? serial : "camera" + std::to_string(camera);
}

Picture pictureOf(const ViewFrame& frame, const PictureChoice& choice) {
    const bool isRaw = frame.layout.pixelType == HOST_PIXEL_RAW8;
    const auto order = isRaw && choice.bayer ? choice.bayer : frame.order;
    const auto bytes = frame.buffer.frame();
    return {fileStem(frame.serial, frame.camera) + "_" + sixDigits(frame.number) + ".png",
            PictureFormat::Png,
            frame.layout,
            {bytes.begin(), bytes.end()},
            choice.demosaic ? order : std::nullopt,
            frameTexts(frame.layout, order, choice.demosaic, frame.serial, frame.number)};
}

std::vector<std::uint8_t> encoded(const Picture& picture) {
    return encodePicture(picture.format, picture.layout, picture.frame, picture.demosaic,
                         picture.texts);
}

}  // namespace camhost
