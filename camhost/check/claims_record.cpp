// SPDX-License-Identifier: MIT
// What GetVideoChannel writes, and what it leaves alone.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "camhost/camera/adapter_call.h"
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

struct Asked {
    std::int32_t result = HOST_RESULT_FAILURE;
    CGuardedBytes memory;

    VideoChannelRecord record() const {
        VideoChannelRecord copy;
        std::memcpy(&copy, memory.data(), sizeof copy);
        return copy;
    }
};

constexpr std::uint8_t otherRecordFill = 0xC3;

Asked askFor(CCheck& check, std::size_t index, std::uint8_t fill = CGuardedBytes::usualFill,
             void* ignored = nullptr) {
    Asked asked{.memory = CGuardedBytes(sizeof(VideoChannelRecord), fill)};
    asked.result = callAdapter("GetVideoChannel", [&] {
        return check.getVideoChannel()(ignored, static_cast<std::int32_t>(index),
                                       reinterpret_cast<VideoChannelRecord*>(asked.memory.data()));
    });
    return asked;
}

VideoChannelRecord again(CCheck& check) {
    return askFor(check, check.place()).record();
}

void sizeIsWritten(CCheck& check) {
    constexpr std::uint32_t size = 632;
    const VideoChannelRecord record = again(check);
    check.expect(record.size == size, "it is " + std::to_string(record.size));
}

void gapsStay(CCheck& check) {
    constexpr std::size_t gaps[] = {
        offsetof(VideoChannelRecord, gap4), offsetof(VideoChannelRecord, gap4) + 3,
        offsetof(VideoChannelRecord, gap632), offsetof(VideoChannelRecord, gap632) + 7};
    for (const std::uint8_t fill : {CGuardedBytes::usualFill, otherRecordFill}) {
        const Asked asked = askFor(check, check.place(), fill);
        for (const std::size_t offset : gaps) {
            check.expect(!asked.memory.isWrittenAt(offset),
                         "the byte at " + std::to_string(offset) + " was written");
        }
    }
}

void nothingIsWrittenAroundTheRecord(CCheck& check) {
    for (const std::uint8_t fill : {CGuardedBytes::usualFill, otherRecordFill}) {
        check.expect(askFor(check, check.place(), fill).memory.isIntact(),
                     "bytes before the record or behind its 680 were written");
    }
}

void contextIsThere(CCheck& check) {
    check.expect(again(check).context != nullptr, "it is null");
}

void entriesAreThere(CCheck& check) {
    const VideoChannelRecord record = again(check);
    const auto has = [&](const auto entry, const char* name) {
        check.expect(entry != nullptr, std::string(name) + " is null");
    };
    has(record.SetCameraParameters, "SetCameraParameters");
    has(record.GetImageInfo, "GetImageInfo");
    has(record.WaitFrame, "WaitFrame");
    has(record.CopyFrame, "CopyFrame");
    has(record.StartAcquisition, "StartAcquisition");
    has(record.StopAcquisition, "StopAcquisition");
    has(record.ExecuteCommand, "ExecuteCommand");
    has(record.GetPropertyValue, "GetPropertyValue");
    has(record.SetPropertyValue, "SetPropertyValue");
    has(record.GetPropertyName, "GetPropertyName");
    has(record.GetPropertyType, "GetPropertyType");
    has(record.GetPropertyChoice, "GetPropertyChoice");
    has(record.GetPropertyAttribute, "GetPropertyAttribute");
    has(record.CloseChannel, "CloseChannel");
}

void nameEndsInTime(CCheck& check) {
    constexpr std::ptrdiff_t most = 253;
    const VideoChannelRecord record = again(check);
    const auto end = std::find(std::begin(record.deviceName), std::end(record.deviceName), '\0');
    check.expect(end - record.deviceName <= most, "it is longer");
}

void serialIsHexadecimal(CCheck& check) {
    const VideoChannelRecord record = again(check);
    const std::string text(record.serialText, std::find(std::begin(record.serialText),
                                                        std::end(record.serialText), '\0'));
    const bool isNumber = !text.empty() &&
                          text.find_first_not_of("0123456789ABCDEF") == text.npos &&
                          (text.front() != '0' || text.size() == 1);
    check.expect(text == "n/a" || isNumber, "it is \"" + text + "\"");
}

void readingsAreFractions(CCheck& check) {
    constexpr double none = -1.0;
    const VideoChannelRecord record = again(check);
    check.expect(record.exposure == none || record.exposure >= 0.0,
                 "the exposure is " + std::to_string(record.exposure));
    for (const double fraction : {record.contrast, record.brightness}) {
        check.expect(fraction == none || (fraction >= 0.0 && fraction <= 1.0),
                     "a fraction is " + std::to_string(fraction));
    }
}

void largestSizeIsPositive(CCheck& check) {
    const VideoChannelRecord record = again(check);
    check.expect(
        record.maxWidth > 0 && record.maxHeight > 0,
        "it is " + std::to_string(record.maxWidth) + "x" + std::to_string(record.maxHeight));
}

void contextStays(CCheck& check) {
    for (std::size_t index = 0; index < check.all().size(); ++index) {
        const Asked asked = askFor(check, index);
        check.expect(asked.result == HOST_RESULT_SUCCESS, "it is not there any more");
        check.expect(asked.record().context == check.all()[index].record().context,
                     "camera " + std::to_string(index) + " has another context");
    }
}

void firstArgumentIsIgnored(CCheck& check) {
    int anything = 0;
    const Asked asked =
        askFor(check, check.place(), CGuardedBytes::usualFill, static_cast<void*>(&anything));
    check.expect(asked.result == HOST_RESULT_SUCCESS, "refused with one that is not null");
    check.expect(anything == 0, "it was written to");
}

void listEnds(CCheck& check) {
    for (const std::size_t index :
         {check.all().size(), static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())}) {
        const Asked asked = askFor(check, index);
        check.expect(
            asked.result == HOST_RESULT_FAILURE,
            "index " + std::to_string(index) + " answered " + std::to_string(asked.result));
    }
}

void recordBehindTheLastStays(CCheck& check) {
    check.expect(askFor(check, check.all().size()).memory.isUntouched(), "it was written");
}

constexpr Claim recordTable[] = {
    {"the size is 632", sizeIsWritten},
    {"the two gaps stay unwritten", gapsStay},
    {"nothing is written before or behind it", nothingIsWrittenAroundTheRecord},
    {"the context is not null", contextIsThere},
    {"every entry point is there", entriesAreThere},
    {"the name has at most 253 bytes", nameEndsInTime},
    {"the serial text is upper-case hexadecimal or n/a", serialIsHexadecimal},
    {"the first readings are in their ranges, or -1", readingsAreFractions},
    {"the largest size is not empty", largestSizeIsPositive},
    {"asked again, the context is the same", contextStays},
    {"the first argument is ignored", firstArgumentIsIgnored},
    {"the list of cameras ends", listEnds},
    {"behind the last camera the record is left alone", recordBehindTheLastStays},
};

}  // namespace

ClaimGroup recordClaims() {
    return {"Record", recordTable};
}

}  // namespace camhost
