// SPDX-License-Identifier: MIT
// What GetImageInfo tells of a camera that stands still.
#include <cstring>

#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

struct Described {
    CGuardedBytes memory{sizeof(ImageInfo)};
    ImageInfo image{};
};

Described describe(CCheck& check) {
    Described described;
    const Answer answer =
        check.host().imageInfo(*reinterpret_cast<ImageInfo*>(described.memory.data()));
    if (!answer.isDone()) {
        throw NotSupported{"GetImageInfo " + told(answer)};
    }
    std::memcpy(&described.image, described.memory.data(), sizeof described.image);
    return described;
}

void sizeIsPositive(CCheck& check) {
    const ImageInfo image = describe(check).image;
    check.expect(image.width > 0 && image.height > 0,
                 std::to_string(image.width) + "x" + std::to_string(image.height));
}

void lineWidthIsInPixels(CCheck& check) {
    const ImageInfo image = describe(check).image;
    check.expect(image.lineWidth == image.width,
                 std::to_string(image.lineWidth) + " at a width of " + std::to_string(image.width));
}

void pixelTypeIsKnown(CCheck& check) {
    const std::uint32_t type = describe(check).image.pixelType;
    check.expect(type == HOST_PIXEL_MONO8 || type == HOST_PIXEL_RAW8 || type == HOST_PIXEL_RGB24,
                 "it is " + std::to_string(type));
}

void regionIsThePicture(CCheck& check) {
    const ImageInfo image = describe(check).image;
    check.expect(image.regionLeft == 0 && image.regionTop == 0, "it does not begin at 0, 0");
    check.expect(image.regionWidth == image.width && image.regionHeight == image.height,
                 "its size is another");
}

void reservedIsZero(CCheck& check) {
    const ImageInfo image = describe(check).image;
    check.expect(image.reserved0 == 0 && image.reserved1 == 0, "it is not");
}

void hostsOwnStays(CCheck& check) {
    const Described described = describe(check);
    for (std::size_t offset = 0; offset < sizeof described.image.hostOwn; ++offset) {
        check.expect(!described.memory.isWrittenAt(offset),
                     "the byte at " + std::to_string(offset) + " was written");
    }
}

void nothingIsWrittenAroundTheDescription(CCheck& check) {
    check.expect(describe(check).memory.isIntact(), "bytes outside of the 44 were written");
}

constexpr Claim imageTable[] = {
    {"the size is not empty", sizeIsPositive},
    {"the line width is the width in pixels", lineWidthIsInPixels},
    {"the pixel type is 0, 4 or 7", pixelTypeIsKnown},
    {"the region is the whole picture", regionIsThePicture},
    {"the reserved fields are 0", reservedIsZero},
    {"the host's own field stays unwritten", hostsOwnStays},
    {"nothing is written before or behind it", nothingIsWrittenAroundTheDescription},
};

}  // namespace

ClaimGroup imageClaims() {
    return {"Image description", imageTable};
}

}  // namespace camhost
