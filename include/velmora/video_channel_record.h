/* SPDX-License-Identifier: MIT
 * The record through which a host drives one camera, and the export that fills
 * it. Plain C11; a host may include it as it is.
 *
 * 64-bit Windows, little-endian, natural alignment, the platform's standard
 * calling convention. Every entry point returns HOST_RESULT_SUCCESS or
 * HOST_RESULT_FAILURE, and takes first a text buffer of at least
 * HOST_TEXT_BYTES bytes (written only when there is something to report, always
 * terminated) and second the record's context. All calls come from one host
 * thread at a time.
 */
#ifndef VELMORA_VIDEO_CHANNEL_RECORD_H
#define VELMORA_VIDEO_CHANNEL_RECORD_H

/* NOLINTBEGIN(modernize-*): this is C. */

#include <stddef.h>
#include <stdint.h>

#include "velmora/host_blocks.h"

#ifdef __cplusplus
extern "C" {
#endif

/* 0 with HOST_STATUS_DONE, or 1 with HOST_STATUS_NO_DEVICE and a text. */
typedef int32_t (*GetImageInfoEntry)(char* errorText, void* context, ImageInfo* image,
                                     uint32_t* status);
/* Always 0: refused and missing settings are skipped. */
typedef int32_t (*SetCameraParametersEntry)(char* errorText, void* context,
                                            const CameraParameterBlock* parameters);
/* Waits up to 1000 ms. 0 with HOST_STATUS_DONE or HOST_STATUS_NO_FRAME, or 1
 * with HOST_STATUS_NO_DEVICE and a text. */
typedef int32_t (*WaitFrameEntry)(char* errorText, void* context, uint32_t* status);
/* Always 0, with HOST_STATUS_DONE or HOST_STATUS_NO_FRAME. The destination
 * holds, by the size at the last start, width x height bytes for Mono8 and Raw8 (for Raw8 at an odd
 * width one byte more per row), three times that for RGB24. */
typedef int32_t (*CopyFrameEntry)(char* errorText, void* context, void* destination,
                                  uint32_t* status);
typedef int32_t (*StartAcquisitionEntry)(char* errorText, void* context);
typedef int32_t (*StopAcquisitionEntry)(char* errorText, void* context);
typedef int32_t (*ExecuteCommandEntry)(char* errorText, void* context, const char* command);
typedef int32_t (*GetPropertyValueEntry)(char* errorText, void* context, const char* key,
                                         char* value);
typedef int32_t (*SetPropertyValueEntry)(char* errorText, void* context, const char* key,
                                         const char* value);
/* 1 when there is no listed property at this index. */
typedef int32_t (*GetPropertyNameEntry)(char* errorText, void* context, int32_t index, char* name);
/* Always 0; the type is one of HOST_PROPERTY_... */
typedef int32_t (*GetPropertyTypeEntry)(char* errorText, void* context, const char* key,
                                        uint32_t* type);
/* 1 when there is no choice at this index. */
typedef int32_t (*GetPropertyChoiceEntry)(char* errorText, void* context, const char* key,
                                          int32_t index, char* choice);
/* Always 0; the key is not consulted. */
typedef int32_t (*GetPropertyAttributeEntry)(char* errorText, void* context, const char* key,
                                             uint32_t attribute, char* text);
/* Always 0; the context is dead afterwards. */
typedef int32_t (*CloseChannelEntry)(char* errorText, void* context);

typedef struct VideoChannelRecord {
    uint32_t size; /* written: 632, the size of the base record */
    uint32_t gap4; /* not written */
    void* context;
    SetCameraParametersEntry SetCameraParameters;
    GetImageInfoEntry GetImageInfo;
    WaitFrameEntry WaitFrame;
    CopyFrameEntry CopyFrame;
    StartAcquisitionEntry StartAcquisition;
    StopAcquisitionEntry StopAcquisition;
    ExecuteCommandEntry ExecuteCommand;
    GetPropertyValueEntry GetPropertyValue;
    SetPropertyValueEntry SetPropertyValue;
    char deviceName[256]; /* at most 253 characters, UTF-8 */
    char serialText[256]; /* upper-case hexadecimal, or "n/a" */
    double exposure;      /* in the camera's own unit, or -1.0 */
    double contrast;      /* fraction of the range, or -1.0 */
    double brightness;    /* fraction of the range, or -1.0 */
    int32_t maxWidth;     /* pixels, when the channel was opened */
    int32_t maxHeight;
    uint64_t gap632; /* not written */
    GetPropertyNameEntry GetPropertyName;
    GetPropertyTypeEntry GetPropertyType;
    GetPropertyChoiceEntry GetPropertyChoice;
    GetPropertyAttributeEntry GetPropertyAttribute;
    CloseChannelEntry CloseChannel;
} VideoChannelRecord;

static_assert(sizeof(void*) == 8, "the record is a 64-bit border");
static_assert(offsetof(VideoChannelRecord, size) == 0, "host layout");
static_assert(offsetof(VideoChannelRecord, gap4) == 4, "host layout");
static_assert(offsetof(VideoChannelRecord, context) == 8, "host layout");
static_assert(offsetof(VideoChannelRecord, SetCameraParameters) == 16, "host layout");
static_assert(offsetof(VideoChannelRecord, GetImageInfo) == 24, "host layout");
static_assert(offsetof(VideoChannelRecord, WaitFrame) == 32, "host layout");
static_assert(offsetof(VideoChannelRecord, CopyFrame) == 40, "host layout");
static_assert(offsetof(VideoChannelRecord, StartAcquisition) == 48, "host layout");
static_assert(offsetof(VideoChannelRecord, StopAcquisition) == 56, "host layout");
static_assert(offsetof(VideoChannelRecord, ExecuteCommand) == 64, "host layout");
static_assert(offsetof(VideoChannelRecord, GetPropertyValue) == 72, "host layout");
static_assert(offsetof(VideoChannelRecord, SetPropertyValue) == 80, "host layout");
static_assert(offsetof(VideoChannelRecord, deviceName) == 88, "host layout");
static_assert(offsetof(VideoChannelRecord, serialText) == 344, "host layout");
static_assert(offsetof(VideoChannelRecord, exposure) == 600, "host layout");
static_assert(offsetof(VideoChannelRecord, contrast) == 608, "host layout");
static_assert(offsetof(VideoChannelRecord, brightness) == 616, "host layout");
static_assert(offsetof(VideoChannelRecord, maxWidth) == 624, "host layout");
static_assert(offsetof(VideoChannelRecord, maxHeight) == 628, "host layout");
static_assert(offsetof(VideoChannelRecord, gap632) == 632, "host layout");
static_assert(offsetof(VideoChannelRecord, GetPropertyName) == 640, "host layout");
static_assert(offsetof(VideoChannelRecord, GetPropertyType) == 648, "host layout");
static_assert(offsetof(VideoChannelRecord, GetPropertyChoice) == 656, "host layout");
static_assert(offsetof(VideoChannelRecord, GetPropertyAttribute) == 664, "host layout");
static_assert(offsetof(VideoChannelRecord, CloseChannel) == 672, "host layout");
static_assert(sizeof(VideoChannelRecord) == 680, "host layout");

/* The adapter's one export. `index` counts cameras from 0; the record is filled
 * and 0 returned, or it is left alone and 1 returned. The first argument is
 * ignored. */
typedef int32_t (*GetVideoChannelEntry)(void* ignored, int32_t index, VideoChannelRecord* record);
int32_t GetVideoChannel(void* ignored, int32_t index, VideoChannelRecord* record);

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-*) */

#endif
