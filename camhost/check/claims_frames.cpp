// SPDX-License-Identifier: MIT
// Frames: what a copy writes, and when there is one.
#include <algorithm>

#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

struct PixelType {
    const char* name;  // in letters that no list has
    std::uint32_t code;
    std::size_t bytes;
};

constexpr PixelType mono8{"MONO8", HOST_PIXEL_MONO8, 1};
constexpr PixelType raw8{"RAW8", HOST_PIXEL_RAW8, 1};
constexpr PixelType rgb24{"RGB24", HOST_PIXEL_RGB24, 3};

std::size_t frameBytes(const ImageInfo& image) {
    const auto width = static_cast<std::size_t>(image.width);
    const auto height = static_cast<std::size_t>(image.height);
    if (image.pixelType == HOST_PIXEL_RGB24) {
        return width * height * 3;
    }
    return (width + (image.pixelType == HOST_PIXEL_RAW8 ? width % 2 : 0)) * height;
}

void needFrame(CCheck& check) {
    check.needLive();
    if (!frameComes(check.host())) {
        throw NotSupported{"no frame came in five waits"};
    }
}

CGuardedBytes copied(CCheck& check, std::uint8_t fill) {
    CGuardedBytes frame(frameBytes(check.picture()), fill);
    needFrame(check);
    check.expectAnswer(check.host().copyFrame(frame.data()),
                       {.result = HOST_RESULT_SUCCESS, .word = HOST_STATUS_DONE});
    return frame;
}

void frameIsCopied(CCheck& check) {
    check.needLive();
    copied(check, CGuardedBytes::usualFill);
}

void copiedFrameIsUsedUp(CCheck& check) {
    check.needLive();
    CGuardedBytes frame(frameBytes(check.picture()));
    needFrame(check);
    CGuardedBytes first = frame;
    check.host().copyFrame(first.data());
    check.expectAnswer(check.host().copyFrame(frame.data()),
                       {.result = HOST_RESULT_SUCCESS, .word = HOST_STATUS_NO_FRAME});
    check.expect(frame.isUntouched(), "the destination was written a second time");
}

constexpr Claim frameTable[] = {
    {"a frame is copied", frameIsCopied},
    {"a copied frame is used up", copiedFrameIsUsedUp},
};

void chooseType(CCheck& check, const PixelType& type) {
    check.goStopped();
    if (const Answer answer = check.host().set(pixelFormatKey, type.name); !answer.isDone()) {
        throw NotSupported{std::string(type.name) + ": SetPropertyValue " + told(answer)};
    }
}

template <const PixelType& type>
void codeIsTold(CCheck& check) {
    chooseType(check, type);
    const std::uint32_t code = check.picture().pixelType;
    check.expect(code == type.code, "it is " + std::to_string(code));
}

template <const PixelType& type>
void copyKeepsInside(CCheck& check) {
    chooseType(check, type);
    check.goLive();
    check.needLive();
    check.expect(copied(check, CGuardedBytes::usualFill).isIntact(),
                 "bytes outside of the picture were written");
}

// What is equal to two fills was not written.
template <const PixelType& type>
void copyWritesAll(CCheck& check) {
    constexpr std::uint8_t otherFill = 0xC3;
    chooseType(check, type);
    check.goLive();
    check.needLive();
    const CGuardedBytes one = copied(check, CGuardedBytes::usualFill);
    const CGuardedBytes other = copied(check, otherFill);
    std::size_t unwritten = 0;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
        if (!one.isWrittenAt(i) && !other.isWrittenAt(i)) {
            ++unwritten;
        }
    }
    check.expect(unwritten == 0, std::to_string(unwritten) + " bytes were not written");
}

constexpr Claim typeTable[] = {
    {"mono8 has the code 0", codeIsTold<mono8>},
    {"mono8 fills the picture", copyWritesAll<mono8>},
    {"mono8 writes nothing outside of it", copyKeepsInside<mono8>},
    {"raw8 has the code 4", codeIsTold<raw8>},
    {"raw8 writes nothing outside of the picture", copyKeepsInside<raw8>},
    {"rgb24 has the code 7", codeIsTold<rgb24>},
    {"rgb24 fills the picture", copyWritesAll<rgb24>},
    {"rgb24 writes nothing outside of it", copyKeepsInside<rgb24>},
};

}  // namespace

ClaimGroup frameClaims() {
    return {"Frames", frameTable, enterLive, leaveStopped};
}

ClaimGroup pixelTypeClaims() {
    return {"Pixel types", typeTable, [](CCheck& check) { check.saveSettings(); }, leaveStopped};
}

}  // namespace camhost
